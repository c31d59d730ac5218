#pragma once
// The arithmetic operators of the language and the two modulo functions.
// None fails: a zero divisor is made safe, a power of a non-positive base is 0.
//
// The operators on doubles share BtExpArithmeticNode: the first time one is
// evaluated it flattens the operator tree below it into a program (see
// BtExpArithmeticProgram), which gives the same values and intervals at a
// fraction of the cost of a call per node.
#include "btExpArithmetic.h"
#include "btExpArithmeticProgram.h"
#include "btExpFuncNode.h"
#include "geVector.h"

#include <atomic>
#include <cmath>

namespace Qv {

// An operator on one or two doubles.
template <class... Args>
class BtExpArithmeticNode : public BtExpFuncNode<double, Args...>, public BtExpArithmeticOperation {
public:
    template <class... Handles>
    BtExpArithmeticNode(PxNode::Init const& init, BtExpArithmetic::Op op, Handles const&... args)
        : PxNode(init), BtExpFuncNode<double, Args...>(init, args...), _op(op) {}
    ~BtExpArithmeticNode() override { delete _program.load(); }

    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const final {
        BtExpArithmeticProgram const& program = getProgram();
        if (program.isCompiled())
            program.evaluate(result, context);
        else
            evaluateOneByOne(result, context);
    }

    BtExpArithmetic::Op getOp() const override { return _op; }
    int getArity() const override { return sizeof...(Args); }
    PxNodePtr<PxAnimValueProtocol<double> const> const& getOperand(int index) const override {
        if constexpr (sizeof...(Args) > 1)
            if (index == 1)
                return this->template getArg<1>();
        return this->template getArg<0>();
    }

private:
    void evaluateOneByOne(PxResult<double>& result, PxTimeContext const& context) const {
        if constexpr (sizeof...(Args) == 2) {
            if (_op == BtExpArithmetic::Op::POWER) {
                // A base that makes the power 0 leaves the exponent unasked: the
                // value holds as long as the base's does.
                PxValidityInterval vi = PxValidityInterval::FULL;
                double const x = this->template evaluateArg<0>(context, vi);
                double const value = BtExpArithmetic::raisesBase(x)
                                         ? std::pow(x, this->template evaluateArg<1>(context, vi))
                                         : 0.0;
                result.set(value, vi);
                return;
            }
        }
        this->evaluate(result, context,
                       [op = _op](auto... values) { return BtExpArithmetic::apply(op, values...); });
    }

    // Compiled once, by whichever worker comes first; a loser drops its copy.
    BtExpArithmeticProgram const& getProgram() const {
        if (BtExpArithmeticProgram const* program = _program.load(std::memory_order_acquire))
            return *program;
        auto* fresh = new BtExpArithmeticProgram(*this);
        BtExpArithmeticProgram const* expected = nullptr;
        if (_program.compare_exchange_strong(expected, fresh, std::memory_order_acq_rel))
            return *fresh;
        delete fresh;
        return *expected;
    }

    BtExpArithmetic::Op const _op;
    mutable std::atomic<BtExpArithmeticProgram const*> _program{nullptr};
};

#define BT_EXP_ARITHMETIC_NODE_CONSTRUCTOR(Class, op, ...)                                                   \
    template <class... Handles>                                                                              \
    explicit Class(PxNode::Init const& init, Handles const&... args)                                         \
        : PxNode(init), __VA_ARGS__(init, BtExpArithmetic::Op::op, args...) {}

// -x, for doubles and componentwise for vectors.
template <class T>
class BtUnarySubtractNode final : public BtUnaryOpNode<T, T> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtUnarySubtractNode, BtUnaryOpNode<T, T>)
    void getAnimValue(PxResult<T>& result, PxTimeContext const& context) const override {
        this->evaluate(result, context, [](T const& x) { return T{} - x; });
    }
};

template <>
class BtUnarySubtractNode<double> final : public BtExpArithmeticNode<double> {
public:
    BT_EXP_ARITHMETIC_NODE_CONSTRUCTOR(BtUnarySubtractNode, NEGATE, BtExpArithmeticNode<double>)
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

template <>
class BtBinaryAddNode<double> final : public BtExpArithmeticNode<double, double> {
public:
    BT_EXP_ARITHMETIC_NODE_CONSTRUCTOR(BtBinaryAddNode, ADD, BtExpArithmeticNode<double, double>)
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

template <>
class BtBinarySubtractNode<double> final : public BtExpArithmeticNode<double, double> {
public:
    BT_EXP_ARITHMETIC_NODE_CONSTRUCTOR(BtBinarySubtractNode, SUBTRACT, BtExpArithmeticNode<double, double>)
};

class BtBinaryMultiplyNode final : public BtExpArithmeticNode<double, double> {
public:
    BT_EXP_ARITHMETIC_NODE_CONSTRUCTOR(BtBinaryMultiplyNode, MULTIPLY, BtExpArithmeticNode<double, double>)
};

// x/y with y made safe: 1/0 is 1/EPS, a huge finite number.
class BtBinaryDivideNode final : public BtExpArithmeticNode<double, double> {
public:
    BT_EXP_ARITHMETIC_NODE_CONSTRUCTOR(BtBinaryDivideNode, DIVIDE, BtExpArithmeticNode<double, double>)
};

// x%y on integers: both truncated to 32 bits, the remainder taken with the
// sign of x and then, when negative, moved up by the divisor. So -5%3 is 1,
// 5%-3 is 2 and -5%-3 is -5.
//
// A divisor that truncates to zero (5%0.5) has no remainder; the result is
// then the truncated dividend, as x mod 0 = x is usually defined, so that the
// value stays finite and follows x. Values beyond 32 bits are clamped to its
// range, NaN counting as 0.
class BtIntegerModNode final : public BtExpArithmeticNode<double, double> {
public:
    BT_EXP_ARITHMETIC_NODE_CONSTRUCTOR(BtIntegerModNode, INTEGER_MOD, BtExpArithmeticNode<double, double>)
};

// x^y and pow(x,y). A base below EPS (zero, negative, NaN) gives 0, so that
// no root of a negative number is ever taken: 0^0 and (-8)^(1/3) are 0. The
// exponent is then not evaluated, and 0^t holds for all time.
class BtPowNode final : public BtExpArithmeticNode<double, double> {
public:
    BT_EXP_ARITHMETIC_NODE_CONSTRUCTOR(BtPowNode, POWER, BtExpArithmeticNode<double, double>)
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

} // namespace Qv
