#pragma once
// lookat(a, b, up): the orientation, as Euler angles in degrees (order XYZ),
// that aims the up vector along a - b and then stands upright (see
// BtExpOrientation::computeAimAngles).
#include "btExpFuncNode.h"
#include "btExpOrientation.h"

namespace Qv {

class BtLookAtNode final
    : public BtFunc3Node<GeVector3<double>, GeVector3<double>, GeVector3<double>, GeVector3<double>> {
public:
    using Vec = GeVector3<double>;
    BT_EXP_NODE_CONSTRUCTOR(BtLookAtNode, BtFunc3Node<Vec, Vec, Vec, Vec>)
    void getAnimValue(PxResult<Vec>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](Vec const& a, Vec const& b, Vec const& up) {
            return BtExpOrientation::computeAimAngles(a - b, up);
        });
    }
};

} // namespace Qv
