#pragma once
// relangle(a, b, c, d): how far the segment from a to b turns when a moves
// by c and b by d. With p = b - a and q = (b + d) - (a + c), the angle from
// p to q in radians (the unit of GeVector2Utils::getAngle), counter-clockwise
// positive; 0 when either vector is zero.
#include "btExpFuncNode.h"
#include "geVector2Utils.h"

#include <cmath>

namespace Qv {

class BtRelAngleNode final
    : public BtFunc4Node<double, GeVector2<double>, GeVector2<double>, GeVector2<double>, GeVector2<double>> {
public:
    using Vec = GeVector2<double>;
    BT_EXP_NODE_CONSTRUCTOR(BtRelAngleNode, BtFunc4Node<double, Vec, Vec, Vec, Vec>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](Vec const& a, Vec const& b, Vec const& c, Vec const& d) {
            Vec const p = b - a;
            Vec const q = (b + d) - (a + c);
            double const angle = std::fabs(GeVector2Utils<double>::getAngle(p, q));
            return p.cross(q) < 0.0 ? -angle : angle;
        });
    }
};

} // namespace Qv
