#pragma once
// Conditions: exact comparisons of numbers, and the logical operators. Both
// operands of "&&" and "||" are always evaluated: a value node has no side
// effects, and the interval must cover both.
#include "btExpFuncNode.h"

#include <functional>

namespace Qv {

// The six comparisons share one shape; Compare is a standard comparison object.
template <class Compare>
class BtComparisonNode final : public BtBinaryOpNode<bool, double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtComparisonNode, BtBinaryOpNode<bool, double, double>)
    void getAnimValue(PxResult<bool>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double x, double y) { return Compare()(x, y); });
    }
};

using BtIsEqualNode = BtComparisonNode<std::equal_to<double>>;
using BtIsNotEqualNode = BtComparisonNode<std::not_equal_to<double>>;
using BtIsLessNode = BtComparisonNode<std::less<double>>;
using BtIsLessOrEqualNode = BtComparisonNode<std::less_equal<double>>;
using BtIsGreaterNode = BtComparisonNode<std::greater<double>>;
using BtIsGreaterOrEqualNode = BtComparisonNode<std::greater_equal<double>>;

class BtLogicalNotNode final : public BtUnaryOpNode<bool, bool> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtLogicalNotNode, BtUnaryOpNode<bool, bool>)
    void getAnimValue(PxResult<bool>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](bool x) { return !x; });
    }
};

class BtLogicalAndNode final : public BtBinaryOpNode<bool, bool, bool> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtLogicalAndNode, BtBinaryOpNode<bool, bool, bool>)
    void getAnimValue(PxResult<bool>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](bool x, bool y) { return x && y; });
    }
};

class BtLogicalOrNode final : public BtBinaryOpNode<bool, bool, bool> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtLogicalOrNode, BtBinaryOpNode<bool, bool, bool>)
    void getAnimValue(PxResult<bool>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](bool x, bool y) { return x || y; });
    }
};

} // namespace Qv
