#include "btExpOrientation.h"

#include "btExpMath.h"
#include "geQuaternion3.h"

#include <cmath>

namespace Qv::BtExpOrientation {

namespace {
constexpr double ROLL_TOLERANCE = 2.220446049250313e-16;

GeVector3<double> normalizedUnlessZero(GeVector3<double> const& v) {
    double const length = v.getLength();
    return length == 0.0 ? v : v / length;
}
} // namespace

GeVector3<double> computeAimAngles(GeVector3<double> const& direction, GeVector3<double> const& up) {
    GeQuaternion3 rotation = GeQuaternion3::aim(up, normalizedUnlessZero(direction));
    // The part of the y axis across w: rolling w onto it stands the frame upright.
    GeVector3<double> const w = normalizedUnlessZero(rotation.getInverse().rotate(up));
    GeVector3<double> const k{-(w.x * w.y), 1.0 - w.y * w.y, -(w.y * w.z)};
    if (k.getLength() > ROLL_TOLERANCE)
        rotation = rotation * GeQuaternion3::aim(w, k / k.getLength());
    return rotation.getEuler(GeQuaternion3::XYZ) * BtExpMath::RAD_TO_DEG;
}

GeVector3<double> getLeastAlignedAxis(GeVector3<double> const& direction) {
    double const x = std::fabs(direction.x);
    double const y = std::fabs(direction.y);
    double const z = std::fabs(direction.z);
    if (x <= y && x <= z)
        return {1.0, 0.0, 0.0};
    if (y <= z)
        return {0.0, 1.0, 0.0};
    return {0.0, 0.0, 1.0};
}

} // namespace Qv::BtExpOrientation
