#pragma once
// align(a, b, offset): the orientation, as Euler angles in degrees (order
// XYZ), along a - b with the two points taken `offset` seconds from the
// request's time: a look-ahead (or behind) for a path. There is no up vector:
// the coordinate axis least in line with the direction stands in for it, so
// that the orientation never degenerates.
//
// The offset is evaluated first, at the request's time; then a and b at the
// shifted time. Their intervals, found at the shifted time, are shifted back.
#include "btExpFuncNode.h"
#include "btExpOrientation.h"

namespace Qv {

class BtAlignNode final
    : public BtFunc3Node<GeVector3<double>, GeVector3<double>, GeVector3<double>, double> {
public:
    using Vec = GeVector3<double>;
    BT_EXP_NODE_CONSTRUCTOR(BtAlignNode, BtFunc3Node<Vec, Vec, Vec, double>)
    void getAnimValue(PxResult<Vec>& result, PxTimeContext const& context) const override {
        PxValidityInterval vi = PxValidityInterval::FULL;
        double const offset = evaluateArg<2>(context, vi);
        PxTimeContext const shifted(context.getTime() + offset);
        PxValidityInterval shiftedVI = PxValidityInterval::FULL;
        Vec const a = evaluateArg<0>(shifted, shiftedVI);
        Vec const b = evaluateArg<1>(shifted, shiftedVI);
        vi.intersect(PxValidityInterval(shiftedVI.getStart() - offset, shiftedVI.getEnd() - offset));
        Vec const direction = a - b;
        result.set(
            BtExpOrientation::computeAimAngles(direction, BtExpOrientation::getLeastAlignedAxis(direction)),
            vi);
    }
};

} // namespace Qv
