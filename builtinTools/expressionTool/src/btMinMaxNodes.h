#pragma once
// Averages and extremes of two or three numbers. Of equal values the first
// wins; that matters for NaN alone: a comparison with NaN fails, so the first
// value is kept. With three, the last two are compared first and the winner
// then against the first.
#include "btExpFuncNode.h"

namespace Qv {

class BtAverageNode final : public BtFunc2Node<double, double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtAverageNode, BtFunc2Node<double, double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double x, double y) { return (x + y) * 0.5; });
    }
};

class BtAverage3Node final : public BtFunc3Node<double, double, double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtAverage3Node, BtFunc3Node<double, double, double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double x, double y, double z) { return (x + y + z) / 3.0; });
    }
};

namespace BtMinMax {
inline double min(double first, double second) {
    return second < first ? second : first;
}
inline double max(double first, double second) {
    return second > first ? second : first;
}
} // namespace BtMinMax

class BtMinNode final : public BtFunc2Node<double, double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtMinNode, BtFunc2Node<double, double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double x, double y) { return BtMinMax::min(x, y); });
    }
};

class BtMin3Node final : public BtFunc3Node<double, double, double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtMin3Node, BtFunc3Node<double, double, double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context,
                 [](double x, double y, double z) { return BtMinMax::min(x, BtMinMax::min(y, z)); });
    }
};

class BtMaxNode final : public BtFunc2Node<double, double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtMaxNode, BtFunc2Node<double, double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double x, double y) { return BtMinMax::max(x, y); });
    }
};

class BtMax3Node final : public BtFunc3Node<double, double, double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtMax3Node, BtFunc3Node<double, double, double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context,
                 [](double x, double y, double z) { return BtMinMax::max(x, BtMinMax::max(y, z)); });
    }
};

} // namespace Qv
