#pragma once
// Random numbers. rand(seed) is repeatable: the same seed gives the same
// value at every time and in every session. truerand(a, b) is not: it draws
// anew from the clock on each evaluation.
#include "btExpFuncNode.h"

#include <cstdint>

namespace Qv {

// rand(seed): the first draw in [0, 1) of RnNumRecUniformRng seeded with the
// seed truncated to an unsigned 64-bit integer (so rand(5.9) is rand(5);
// negative and NaN seeds count as 0, seeds beyond 64 bits as the largest).
class BtRandNode final : public BtFunc1Node<double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtRandNode, BtFunc1Node<double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double seed) { return compute(seed); });
    }
    static double compute(double seed);
    static std::uint64_t toSeed(double value);
};

// truerand(a, b): a + (b - a) * u, u drawn in [0, 1) with a seed from the wall
// clock (minutes * 6e7 + seconds * 1e6 of the local time, to the microsecond).
// The interval is its children's: with constant bounds a first draw stays
// until the graph is rebuilt.
class BtTrueRandNode final : public BtFunc2Node<double, double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtTrueRandNode, BtFunc2Node<double, double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double a, double b) { return compute(a, b); });
    }
    static double compute(double a, double b);
};

} // namespace Qv
