#pragma once
// Rotations of three-dimensional space as unit quaternions, over Imath's.
//
// Conventions: vectors are columns and rotations act on them from the left,
// so `a * b` rotates by b first and then by a, and rotate(v) is q v q*.
// Angles are radians, counter-clockwise when looking down the axis towards
// the origin (right-handed).
#include "geVector.h"

namespace Qv {

class GeQuaternion3 {
public:
    // The order in which getEuler's three rotations, each about a fixed
    // coordinate axis, are applied: XYZ (0) turns about x first, then y, then z.
    enum RotationOrder { XYZ = 0, XZY = 1, YXZ = 2, YZX = 3, ZXY = 4, ZYX = 5 };

    // The identity.
    GeQuaternion3() = default;
    GeQuaternion3(double w, GeVector3<double> const& v) : _w(w), _v(v) {}

    // The shortest rotation that turns the direction `from` onto the direction
    // `to` (their lengths do not matter). Opposite directions turn half a turn
    // about an axis perpendicular to both. A zero vector has no direction: the
    // result is the identity.
    static GeQuaternion3 aim(GeVector3<double> const& from, GeVector3<double> const& to);
    // The rotation by the three angles (radians) applied in the given order.
    static GeQuaternion3 fromEuler(GeVector3<double> const& angles, RotationOrder order = XYZ);

    double getW() const { return _w; }
    GeVector3<double> const& getV() const { return _v; }

    GeQuaternion3 getInverse() const;
    GeVector3<double> rotate(GeVector3<double> const& v) const;
    friend GeQuaternion3 operator*(GeQuaternion3 const& a, GeQuaternion3 const& b);

    // The angles (radians, x y z) about the fixed axes that, applied in
    // `order`, give this rotation. Each lies in [-pi, pi]; where two solutions
    // exist the one with the middle angle in [-pi/2, pi/2] is given.
    GeVector3<double> getEuler(RotationOrder order = XYZ) const;

private:
    double _w = 1.0;
    GeVector3<double> _v{};
};

} // namespace Qv
