#pragma once
// t: the time of the request, valid for a tick around it.
#include "btExpFuncNode.h"
#include "btExpMath.h"

namespace Qv {

class BtCurrentTimeNode final : public BtExpFuncNode<double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtCurrentTimeNode, BtExpFuncNode<double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        result.set(context.getTime(), BtExpMath::getTimeDependentInterval(context.getTime()));
    }
};

} // namespace Qv
