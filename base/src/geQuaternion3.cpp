#include "geQuaternion3.h"

#include <Imath/ImathEuler.h>
#include <Imath/ImathQuat.h>

namespace Qv {

namespace {

Imath::Quatd toImath(GeQuaternion3 const& q) {
    return Imath::Quatd(q.getW(), q.getV().x, q.getV().y, q.getV().z);
}

GeQuaternion3 fromImath(Imath::Quatd const& q) {
    return GeQuaternion3(q.r, {q.v.x, q.v.y, q.v.z});
}

Imath::V3d toImath(GeVector3<double> const& v) {
    return Imath::V3d(v.x, v.y, v.z);
}

// Imath names an order by its axes in the order they are applied to a vector
// (its matrices take row vectors, so "XYZ" is x first), as ours does.
Imath::Eulerd::Order toImath(GeQuaternion3::RotationOrder order) {
    switch (order) {
    case GeQuaternion3::XZY:
        return Imath::Eulerd::XZY;
    case GeQuaternion3::YXZ:
        return Imath::Eulerd::YXZ;
    case GeQuaternion3::YZX:
        return Imath::Eulerd::YZX;
    case GeQuaternion3::ZXY:
        return Imath::Eulerd::ZXY;
    case GeQuaternion3::ZYX:
        return Imath::Eulerd::ZYX;
    case GeQuaternion3::XYZ:
        break;
    }
    return Imath::Eulerd::XYZ;
}

} // namespace

GeQuaternion3 GeQuaternion3::aim(GeVector3<double> const& from, GeVector3<double> const& to) {
    if (from.getLength() == 0.0 || to.getLength() == 0.0)
        return GeQuaternion3();
    Imath::Quatd q;
    q.setRotation(toImath(from), toImath(to));
    return fromImath(q);
}

GeQuaternion3 GeQuaternion3::fromEuler(GeVector3<double> const& angles, RotationOrder order) {
    Imath::Eulerd const euler(toImath(angles), toImath(order), Imath::Eulerd::XYZLayout);
    return fromImath(euler.toQuat());
}

GeQuaternion3 GeQuaternion3::getInverse() const {
    return fromImath(toImath(*this).inverse());
}

GeVector3<double> GeQuaternion3::rotate(GeVector3<double> const& v) const {
    Imath::V3d const r = toImath(*this).rotateVector(toImath(v));
    return {r.x, r.y, r.z};
}

GeQuaternion3 operator*(GeQuaternion3 const& a, GeQuaternion3 const& b) {
    // Hamilton's product: rotate(a * b, v) == rotate(a, rotate(b, v)).
    return fromImath(toImath(a) * toImath(b));
}

GeVector3<double> GeQuaternion3::getEuler(RotationOrder order) const {
    Imath::Eulerd euler(toImath(order));
    euler.extract(toImath(*this).normalized());
    Imath::V3d const angles = euler.toXYZVector();
    return {angles.x, angles.y, angles.z};
}

} // namespace Qv
