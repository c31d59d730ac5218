// Rotations: aiming one direction at another, composing, and reading Euler
// angles back in each order, against rotations built axis by axis.
#include "geQuaternion3.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

using namespace Qv;

namespace {

using V = GeVector3<double>;

void expectNear(V const& a, V const& b, char const* what) {
    EXPECT_NEAR(a.x, b.x, 1e-12) << what << ": " << a << " vs " << b;
    EXPECT_NEAR(a.y, b.y, 1e-12) << what << ": " << a << " vs " << b;
    EXPECT_NEAR(a.z, b.z, 1e-12) << what << ": " << a << " vs " << b;
}

V normalized(V const& v) {
    return v / v.getLength();
}

GeQuaternion3 about(V const& axis, double angle) {
    return GeQuaternion3(std::cos(angle / 2), normalized(axis) * std::sin(angle / 2));
}

} // namespace

TEST(GeQuaternion3, AimTurnsOneDirectionOntoTheOther) {
    struct Case {
        char const* what;
        V from, to;
    } const cases[] = {
        {"x onto y", {1, 0, 0}, {0, 1, 0}},
        {"lengths do not matter", {0, 0, 3}, {2, 2, 0}},
        {"same direction", {1, 2, 3}, {2, 4, 6}},
        {"opposite directions", {0, 1, 0}, {0, -5, 0}},
        {"nearly opposite", {1, 0, 0}, {-1, 1e-9, 0}},
        {"skew", {0.3, -2, 0.7}, {-1, 0.2, 0.1}},
    };
    for (Case const& c : cases) {
        GeQuaternion3 const q = GeQuaternion3::aim(c.from, c.to);
        expectNear(q.rotate(normalized(c.from)), normalized(c.to), c.what);
        EXPECT_NEAR(q.getW() * q.getW() + q.getV().dot(q.getV()), 1.0, 1e-12) << c.what;
    }
    GeQuaternion3 const none = GeQuaternion3::aim({0, 0, 0}, {1, 0, 0});
    EXPECT_EQ(none.getW(), 1.0) << "a zero vector has no direction: the identity";
    EXPECT_EQ(none.getV(), (V{0, 0, 0}));
    EXPECT_EQ(GeQuaternion3::aim({1, 0, 0}, {0, 0, 0}).getW(), 1.0);
}

TEST(GeQuaternion3, ProductRotatesByTheRightFactorFirstAndInverseUndoes) {
    GeQuaternion3 const a = about({0, 0, 1}, std::numbers::pi / 2); // x to y
    GeQuaternion3 const b = about({0, 1, 0}, std::numbers::pi / 2); // z to x
    expectNear((a * b).rotate({0, 0, 1}), {0, 1, 0}, "b then a");
    expectNear((b * a).rotate({0, 0, 1}), {1, 0, 0}, "a then b");
    V const v{0.3, -1.2, 2.5};
    expectNear((a * b).getInverse().rotate((a * b).rotate(v)), v, "inverse");
}

TEST(GeQuaternion3, EulerAnglesAreFixedAxisRotationsInTheOrderNamed) {
    V const angles{0.3, -0.7, 1.1};
    GeQuaternion3 const rx = about({1, 0, 0}, angles.x);
    GeQuaternion3 const ry = about({0, 1, 0}, angles.y);
    GeQuaternion3 const rz = about({0, 0, 1}, angles.z);
    struct Case {
        GeQuaternion3::RotationOrder order;
        GeQuaternion3 rotation; // the first axis named is applied first
    } const cases[] = {
        {GeQuaternion3::XYZ, rz * ry * rx}, {GeQuaternion3::XZY, ry * rz * rx},
        {GeQuaternion3::YXZ, rz * rx * ry}, {GeQuaternion3::YZX, rx * rz * ry},
        {GeQuaternion3::ZXY, ry * rx * rz}, {GeQuaternion3::ZYX, rx * ry * rz},
    };
    V const probe{0.2, 0.9, -0.4};
    for (Case const& c : cases) {
        expectNear(c.rotation.getEuler(c.order), angles, "getEuler");
        expectNear(GeQuaternion3::fromEuler(angles, c.order).rotate(probe), c.rotation.rotate(probe),
                   "fromEuler");
    }
    expectNear(GeQuaternion3().getEuler(), {0, 0, 0}, "identity");
    expectNear(about({0, 0, 1}, std::numbers::pi / 2).getEuler(), {0, 0, std::numbers::pi / 2}, "quarter");
}
