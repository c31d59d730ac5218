#pragma once
// The one-argument functions of plain arithmetic: sign, roots, logarithms,
// rounding. Each domain error has a defined value, noted at its class.
#include "btExpFuncNode.h"
#include "btExpMath.h"

#include <cmath>
#include <cstdint>

namespace Qv {

class BtAbsNode final : public BtFunc1Node<double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtAbsNode, BtFunc1Node<double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double x) { return std::fabs(x); });
    }
};

// -1 below zero, +1 otherwise: sign(0) is 1.
class BtSignNode final : public BtFunc1Node<double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtSignNode, BtFunc1Node<double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double x) { return x < 0.0 ? -1.0 : 1.0; });
    }
};

// The root of a negative number is the negated root of its opposite: sqrt(-4) is -2.
class BtSqrtNode final : public BtFunc1Node<double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtSqrtNode, BtFunc1Node<double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double x) { return x < 0.0 ? -std::sqrt(-x) : std::sqrt(x); });
    }
};

class BtExpNode final : public BtFunc1Node<double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtExpNode, BtFunc1Node<double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double x) { return std::exp(x); });
    }
};

// Natural logarithm; of a negative number the most negative double, of zero minus infinity.
class BtLnNode final : public BtFunc1Node<double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtLnNode, BtFunc1Node<double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context,
                 [](double x) { return x < 0.0 ? BtExpMath::LOG_OF_NEGATIVE : std::log(x); });
    }
};

// Base-10 logarithm, with the values of BtLnNode outside its domain.
class BtLogNode final : public BtFunc1Node<double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtLogNode, BtFunc1Node<double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context,
                 [](double x) { return x < 0.0 ? BtExpMath::LOG_OF_NEGATIVE : std::log10(x); });
    }
};

// Halves go up: round(2.5) is 3 and round(-0.5) is 0.
class BtRoundNode final : public BtFunc1Node<double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtRoundNode, BtFunc1Node<double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double x) { return std::floor(0.5 + x); });
    }
};

class BtCeilNode final : public BtFunc1Node<double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtCeilNode, BtFunc1Node<double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double x) { return std::ceil(x); });
    }
};

class BtFloorNode final : public BtFunc1Node<double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtFloorNode, BtFunc1Node<double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double x) { return std::floor(x); });
    }
};

// Towards zero through a 64-bit integer: values beyond its range take the
// nearest end, NaN gives 0.
class BtTruncNode final : public BtFunc1Node<double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtTruncNode, BtFunc1Node<double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double x) { return compute(x); });
    }
    static double compute(double x) {
        constexpr double LIMIT = 9223372036854775808.0; // 2^63
        if (!(x == x))
            return 0.0;
        if (x >= LIMIT)
            return static_cast<double>(INT64_MAX);
        if (x <= -LIMIT)
            return -LIMIT;
        return static_cast<double>(static_cast<std::int64_t>(x));
    }
};

} // namespace Qv
