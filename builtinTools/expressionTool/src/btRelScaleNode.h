#pragma once
// relscale(a, b, c, d): how much the segment from a to b stretches when a
// moves by c and b by d: |(b + d) - (a + c)| / |b - a|, or 1 when the segment
// has no length.
#include "btExpFuncNode.h"
#include "geVector.h"

namespace Qv {

class BtRelScaleNode final
    : public BtFunc4Node<double, GeVector2<double>, GeVector2<double>, GeVector2<double>, GeVector2<double>> {
public:
    using Vec = GeVector2<double>;
    BT_EXP_NODE_CONSTRUCTOR(BtRelScaleNode, BtFunc4Node<double, Vec, Vec, Vec, Vec>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](Vec const& a, Vec const& b, Vec const& c, Vec const& d) {
            double const before = (b - a).getLength();
            return before > 0.0 ? ((b + d) - (a + c)).getLength() / before : 1.0;
        });
    }
};

} // namespace Qv
