#pragma once
// The arithmetic operators on doubles, in one place: the operator nodes and
// the programs compiled from them compute with these, so both give the very
// same numbers.
#include "btExpMath.h"

#include <cmath>
#include <cstdint>

namespace Qv::BtExpArithmetic {

enum class Op : std::uint8_t { NEGATE, ADD, SUBTRACT, MULTIPLY, DIVIDE, POWER, INTEGER_MOD };

// x%y on integers (see BtIntegerModNode).
double integerMod(double x, double y);

// Whether x^y is pow(x, y): a base below EPS (zero, negative, NaN) makes the
// power 0 whatever the exponent, so that no root of a negative number is taken.
inline bool raisesBase(double x) {
    return x >= BtExpMath::EPS;
}

// y is ignored by NEGATE.
inline double apply(Op op, double x, double y) {
    switch (op) {
    case Op::NEGATE:
        return 0.0 - x;
    case Op::ADD:
        return x + y;
    case Op::SUBTRACT:
        return x - y;
    case Op::MULTIPLY:
        return x * y;
    case Op::DIVIDE:
        return x / BtExpMath::safeDivisor(y);
    case Op::POWER:
        return raisesBase(x) ? std::pow(x, y) : 0.0;
    case Op::INTEGER_MOD:
        return integerMod(x, y);
    }
    __builtin_unreachable(); // every Op is a case above
}

inline double apply(Op op, double x) {
    return apply(op, x, 0.0);
}

} // namespace Qv::BtExpArithmetic
