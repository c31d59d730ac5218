#pragma once
// The arithmetic operators of the language and the two modulo functions.
// None fails: a zero divisor is made safe, a power of a non-positive base is 0.
#include "btExpFuncNode.h"
#include "btExpMath.h"
#include "geVector.h"

#include <cmath>
#include <cstdint>

namespace Qv {

// -x, for doubles and componentwise for vectors.
template <class T>
class BtUnarySubtractNode final : public BtUnaryOpNode<T, T> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtUnarySubtractNode, BtUnaryOpNode<T, T>)
    void getAnimValue(PxResult<T>& result, PxTimeContext const& context) const override {
        this->evaluate(result, context, [](T const& x) { return T{} - x; });
    }
};

// x+y, for doubles and componentwise for vectors.
template <class T>
class BtBinaryAddNode final : public BtBinaryOpNode<T, T, T> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtBinaryAddNode, BtBinaryOpNode<T, T, T>)
    void getAnimValue(PxResult<T>& result, PxTimeContext const& context) const override {
        this->evaluate(result, context, [](T const& x, T const& y) { return x + y; });
    }
};

// x-y, for doubles and componentwise for vectors.
template <class T>
class BtBinarySubtractNode final : public BtBinaryOpNode<T, T, T> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtBinarySubtractNode, BtBinaryOpNode<T, T, T>)
    void getAnimValue(PxResult<T>& result, PxTimeContext const& context) const override {
        this->evaluate(result, context, [](T const& x, T const& y) { return x - y; });
    }
};

class BtBinaryMultiplyNode final : public BtBinaryOpNode<double, double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtBinaryMultiplyNode, BtBinaryOpNode<double, double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double x, double y) { return x * y; });
    }
};

// x/y with y made safe: 1/0 is 1/EPS, a huge finite number.
class BtBinaryDivideNode final : public BtBinaryOpNode<double, double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtBinaryDivideNode, BtBinaryOpNode<double, double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double x, double y) { return x / BtExpMath::safeDivisor(y); });
    }
};

// x%y on integers: both truncated to 32 bits, the remainder taken with the
// sign of x and then, when negative, moved up by the divisor. So -5%3 is 1,
// 5%-3 is 2 and -5%-3 is -5.
//
// A divisor that truncates to zero (5%0.5) has no remainder; the result is
// then the truncated dividend, as x mod 0 = x is usually defined, so that the
// value stays finite and follows x. Values beyond 32 bits are clamped to its
// range, NaN counting as 0.
class BtIntegerModNode final : public BtBinaryOpNode<double, double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtIntegerModNode, BtBinaryOpNode<double, double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double x, double y) { return compute(x, y); });
    }
    static double compute(double x, double y);
};

// mod(x,y): the floating remainder of x by safe(y), with the sign of x. The
// divisor is asked for first.
class BtModNode final : public BtFunc2Node<double, double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtModNode, BtFunc2Node<double, double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        PxValidityInterval vi = PxValidityInterval::FULL;
        double const y = evaluateArg<1>(context, vi);
        double const x = evaluateArg<0>(context, vi);
        result.set(std::fmod(x, BtExpMath::safeDivisor(y)), vi);
    }
};

// x^y and pow(x,y). A base below EPS (zero, negative, NaN) gives 0, so that
// no root of a negative number is ever taken: 0^0 and (-8)^(1/3) are 0.
class BtPowNode final : public BtBinaryOpNode<double, double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtPowNode, BtBinaryOpNode<double, double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context,
                 [](double x, double y) { return x >= BtExpMath::EPS ? std::pow(x, y) : 0.0; });
    }
};

} // namespace Qv
