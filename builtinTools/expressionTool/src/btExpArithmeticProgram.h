#pragma once
// A tree of arithmetic operator nodes flattened into a list of steps over
// registers, so that evaluating it costs a step per operator instead of a
// call per node: constants are preloaded, the time is read once, and only the
// other nodes under the tree (references, functions) are asked, as leaves.
//
// It computes exactly what the nodes compute: the same operations in the same
// order on the same values, and the same interval (the intersection of every
// leaf's, the constants' and the time's, as each operator intersects its
// operands'). Leaves are asked in the order the nodes would ask them.
//
// A power is the one operator that may leave an operand unasked: when its
// base gives 0 the exponent is not evaluated and does not narrow the
// interval. A program asks every leaf before it computes, so a power is
// flattened only when its exponent is a constant valid forever; any other
// power is a leaf, which evaluates itself (and its operands their programs).
#include "btExpArithmetic.h"
#include "pxAnimValueProtocol.h"
#include "pxHandles.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace Qv {

// What an arithmetic operator node tells the compiler about itself.
class BtExpArithmeticOperation {
public:
    virtual ~BtExpArithmeticOperation() = default;
    virtual BtExpArithmetic::Op getOp() const = 0;
    virtual int getArity() const = 0;
    virtual PxNodePtr<PxAnimValueProtocol<double> const> const& getOperand(int index) const = 0;
};

class BtExpArithmeticProgram {
public:
    // Registers live on the stack of an evaluation; a bigger tree is left to its nodes.
    static constexpr int MAX_REGISTERS = 64;

    explicit BtExpArithmeticProgram(BtExpArithmeticOperation const& root);

    // False when the tree needs more registers than there are, or when its
    // root is a power that cannot be flattened.
    bool isCompiled() const { return !_steps.empty(); }
    void evaluate(PxResult<double>& result, PxTimeContext const& context) const;

private:
    // An operand that is the step just before is read from the accumulator,
    // a machine register, rather than from memory it has only just reached.
    static constexpr std::uint8_t ACCUMULATOR = 255;
    struct Step {
        BtExpArithmetic::Op op;
        std::uint8_t target;
        std::uint8_t x;
        std::uint8_t y;
    };
    struct Compiler;

    // Whether an operation joins the program of the tree above it.
    static bool flattens(BtExpArithmeticOperation const& operation);

    std::vector<double> _constants; // preloaded into the first registers
    PxValidityInterval _constantsInterval = PxValidityInterval::FULL;
    int _timeRegister = -1; // none when the tree does not read the time
    std::vector<std::pair<std::uint8_t, PxNodePtr<PxAnimValueProtocol<double> const>>> _leaves;
    std::vector<Step> _steps;
};

} // namespace Qv
