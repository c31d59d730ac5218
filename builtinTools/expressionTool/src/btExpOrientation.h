#pragma once
// The orientation that points along a direction, as Euler angles in degrees
// (rotation order XYZ): what lookat and align give.
#include "geVector.h"

namespace Qv::BtExpOrientation {

// `up` is aimed along `direction` (normalised unless it has no length), and
// the rotation is then rolled so that the up vector, seen from the aimed
// frame, leans towards the world's y axis. Nothing here fails: zero vectors
// give the rotations that the aim of GeQuaternion3 gives them.
GeVector3<double> computeAimAngles(GeVector3<double> const& direction, GeVector3<double> const& up);

// The coordinate axis along which `direction` has its smallest absolute
// component (x before y before z on a tie): the axis least in line with it.
GeVector3<double> getLeastAlignedAxis(GeVector3<double> const& direction);

} // namespace Qv::BtExpOrientation
