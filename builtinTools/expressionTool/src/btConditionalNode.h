#pragma once
// if(c, x, y): the condition first, then the branch it selects and only that
// one. The other branch is not asked for and does not narrow the interval,
// the one place where a child may stay unevaluated.
#include "btExpFuncNode.h"

namespace Qv {

template <class T>
class BtConditionalNode final : public BtFunc3Node<T, bool, T, T> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtConditionalNode, BtFunc3Node<T, bool, T, T>)
    void getAnimValue(PxResult<T>& result, PxTimeContext const& context) const override {
        PxValidityInterval vi = PxValidityInterval::FULL;
        T const value = this->template evaluateArg<0>(context, vi)
                            ? this->template evaluateArg<1>(context, vi)
                            : this->template evaluateArg<2>(context, vi);
        result.set(value, vi);
    }
};

} // namespace Qv
