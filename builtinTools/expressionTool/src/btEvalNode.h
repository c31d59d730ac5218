#pragma once
// eval(x, time): x as it is at another time. The time is evaluated at the
// request's time, then x at the time found. The result depends on the
// request's time through both, so it holds for a tick around it, whatever the
// children's intervals (theirs are about other times).
#include "btExpFuncNode.h"
#include "btExpMath.h"

namespace Qv {

template <class T>
class BtEvalNode final : public BtFunc2Node<T, T, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtEvalNode, BtFunc2Node<T, T, double>)
    void getAnimValue(PxResult<T>& result, PxTimeContext const& context) const override {
        PxValidityInterval ignored = PxValidityInterval::FULL;
        PxTimeContext const other(this->template evaluateArg<1>(context, ignored));
        T const value = this->template evaluateArg<0>(other, ignored);
        result.set(value, BtExpMath::getTimeDependentInterval(context.getTime()));
    }
};

} // namespace Qv
