#include "btExpArithmeticProgram.h"

#include "btCurrentTimeNode.h"
#include "pxValueNodes.h"

#include <algorithm>

namespace Qv {

namespace {
PxConstantAnimValueNode<double> const* asConstant(PxNodePtr<PxAnimValueProtocol<double> const> const& node) {
    return dynamic_cast<PxConstantAnimValueNode<double> const*>(node.get());
}
} // namespace

// Walks the tree depth first, left first, as the nodes evaluate; registers are
// numbered once the counts are known: constants, time, leaves, then steps.
struct BtExpArithmeticProgram::Compiler {
    enum Kind { CONSTANT, TIME, LEAF, STEP };
    struct Ref {
        Kind kind;
        int index;
    };
    struct PendingStep {
        BtExpArithmetic::Op op;
        Ref x, y;
    };

    BtExpArithmeticProgram& program;
    bool readsTime = false;
    std::vector<PendingStep> steps;

    Ref walk(BtExpArithmeticOperation const& operation) {
        Ref const x = operand(operation.getOperand(0));
        Ref const y = operation.getArity() > 1 ? operand(operation.getOperand(1)) : x;
        steps.push_back({operation.getOp(), x, y});
        return {STEP, static_cast<int>(steps.size()) - 1};
    }

    Ref operand(PxNodePtr<PxAnimValueProtocol<double> const> const& node) {
        auto const* operation = dynamic_cast<BtExpArithmeticOperation const*>(node.get());
        if (operation != nullptr && flattens(*operation))
            return walk(*operation);
        if (auto const* constant = asConstant(node)) {
            program._constants.push_back(constant->getValue());
            program._constantsInterval.intersect(constant->getResult().getVI());
            return {CONSTANT, static_cast<int>(program._constants.size()) - 1};
        }
        if (dynamic_cast<BtCurrentTimeNode const*>(node.get()) != nullptr) {
            readsTime = true;
            return {TIME, 0};
        }
        program._leaves.emplace_back(0, node);
        return {LEAF, static_cast<int>(program._leaves.size()) - 1};
    }

    std::uint8_t registerOf(Ref ref) const {
        int const constants = static_cast<int>(program._constants.size());
        int const leavesStart = constants + (readsTime ? 1 : 0);
        int const stepsStart = leavesStart + static_cast<int>(program._leaves.size());
        switch (ref.kind) {
        case CONSTANT:
            return static_cast<std::uint8_t>(ref.index);
        case TIME:
            return static_cast<std::uint8_t>(constants);
        case LEAF:
            return static_cast<std::uint8_t>(leavesStart + ref.index);
        case STEP:
            break;
        }
        return static_cast<std::uint8_t>(stepsStart + ref.index);
    }

    void finish() {
        std::size_t const registers =
            program._constants.size() + (readsTime ? 1 : 0) + program._leaves.size() + steps.size();
        if (registers > MAX_REGISTERS)
            return; // not compiled: the nodes evaluate themselves
        if (readsTime)
            program._timeRegister = static_cast<int>(program._constants.size());
        for (std::size_t i = 0; i < program._leaves.size(); ++i)
            program._leaves[i].first = registerOf({LEAF, static_cast<int>(i)});
        for (std::size_t i = 0; i < steps.size(); ++i) {
            auto const source = [i, this](Ref ref) {
                bool const previous = ref.kind == STEP && ref.index + 1 == static_cast<int>(i);
                return previous ? ACCUMULATOR : registerOf(ref);
            };
            program._steps.push_back({steps[i].op, registerOf({STEP, static_cast<int>(i)}),
                                      source(steps[i].x), source(steps[i].y)});
        }
    }
};

bool BtExpArithmeticProgram::flattens(BtExpArithmeticOperation const& operation) {
    if (operation.getOp() != BtExpArithmetic::Op::POWER)
        return true;
    auto const* exponent = asConstant(operation.getOperand(1));
    return exponent != nullptr && exponent->getResult().getVI() == PxValidityInterval::FULL;
}

BtExpArithmeticProgram::BtExpArithmeticProgram(BtExpArithmeticOperation const& root) {
    if (!flattens(root))
        return; // not compiled: the power evaluates itself
    Compiler compiler{*this, false, {}};
    compiler.walk(root);
    compiler.finish();
}

void BtExpArithmeticProgram::evaluate(PxResult<double>& result, PxTimeContext const& context) const {
    double registers[MAX_REGISTERS];
    std::copy(_constants.begin(), _constants.end(), registers);
    PxValidityInterval vi = _constantsInterval;
    if (_timeRegister >= 0) {
        registers[_timeRegister] = context.getTime();
        // Narrowed inline: this runs at every evaluation.
        PxValidityInterval const tick = BtExpMath::getTimeDependentInterval(context.getTime());
        vi = PxValidityInterval(std::max(vi.getStart(), tick.getStart()),
                                std::min(vi.getEnd(), tick.getEnd()));
    }
    PxResult<double> leaf;
    for (auto const& [target, node] : _leaves) {
        node->getAnimValue(leaf, context);
        registers[target] = leaf.getValue();
        vi.intersect(leaf.getVI());
    }
    double accumulator = 0.0;
    for (Step const& step : _steps) {
        double const x = step.x == ACCUMULATOR ? accumulator : registers[step.x];
        double const y = step.y == ACCUMULATOR ? accumulator : registers[step.y];
        accumulator = BtExpArithmetic::apply(step.op, x, y);
        registers[step.target] = accumulator;
    }
    result.set(accumulator, vi);
}

} // namespace Qv
