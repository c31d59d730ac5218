// Operator trees are evaluated as flattened programs: random trees of every
// operator over the time, constants and other nodes, small enough to compile
// and too big to, give what the operators give one node at a time, values
// and intervals alike. A power whose base gives 0 leaves its exponent unasked,
// so a time in the exponent alone does not narrow the interval.
#include "btExpArithmetic.h"
#include "btExpMath.h"
#include "btNoiseGenerator.h"
#include "expTestSupport.h"

#include <cmath>
#include <functional>
#include <random>
#include <string>

using namespace Qv;
using Qv::ExpTest::evaluate;

namespace {

// What a node gives at a time: its value, and whether anything it asked follows the clock.
struct Outcome {
    double value;
    bool timed;
};

// A random expression: its text, the same text with every operand made a node
// of its own (an if, which no program flattens), and its outcome computed
// here, operator by operator.
struct Tree {
    std::string text;
    std::string apart;
    std::function<Outcome(double)> outcome;
};

std::string alone(std::string const& text) {
    return "if(0<1," + text + ",0)";
}

class Generator {
public:
    explicit Generator(unsigned seed) : _random(seed) {}

    // A full tree has every leaf at the full depth, but for the operands powers are given.
    Tree make(int depth, bool full = false) {
        if (depth == 0 || (!full && pick(4) == 0))
            return leaf();
        if (pick(8) == 0) {
            Tree x = make(depth - 1, full);
            return {"(-" + x.text + ")", "(-" + alone(x.apart) + ")", [v = x.outcome](double t) {
                        Outcome const o = v(t);
                        return Outcome{0.0 - o.value, o.timed};
                    }};
        }
        static char const* const ops[] = {"+", "-", "*", "/", "^", "%"};
        static BtExpArithmetic::Op const codes[] = {
            BtExpArithmetic::Op::ADD,    BtExpArithmetic::Op::SUBTRACT, BtExpArithmetic::Op::MULTIPLY,
            BtExpArithmetic::Op::DIVIDE, BtExpArithmetic::Op::POWER,    BtExpArithmetic::Op::INTEGER_MOD};
        int const op = pick(6);
        // Powers often get a base that makes them 0 and an exponent that follows the clock.
        bool const power = codes[op] == BtExpArithmetic::Op::POWER;
        Tree x = power && pick(2) == 0 ? leaf(pick(2) == 0 ? ZERO : NEGATIVE) : make(depth - 1, full);
        Tree y = power && pick(2) == 0 ? clocked(depth - 1) : make(depth - 1, full);
        return {"(" + x.text + ops[op] + y.text + ")", "(" + alone(x.apart) + ops[op] + alone(y.apart) + ")",
                [code = codes[op], a = x.outcome, b = y.outcome](double t) {
                    Outcome const first = a(t);
                    if (code == BtExpArithmetic::Op::POWER && !BtExpArithmetic::raisesBase(first.value))
                        return Outcome{0.0, first.timed};
                    Outcome const second = b(t);
                    return Outcome{BtExpArithmetic::apply(code, first.value, second.value),
                                   first.timed || second.timed};
                }};
    }

private:
    enum Leaf { TIME, CONSTANT, ZERO, NEGATIVE, NOISE, SINE, LEAVES };

    int pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(_random); }

    // A tree that reads the time wherever it goes.
    Tree clocked(int depth) {
        if (depth <= 0)
            return leaf(pick(2) == 0 ? TIME : NOISE);
        Tree x = clocked(depth - 1);
        Tree y = make(depth - 1);
        return {"(" + x.text + "+" + y.text + ")", "(" + alone(x.apart) + "+" + alone(y.apart) + ")",
                [a = x.outcome, b = y.outcome](double t) {
                    Outcome const first = a(t);
                    Outcome const second = b(t);
                    return Outcome{first.value + second.value, true};
                }};
    }

    Tree leaf() { return leaf(static_cast<Leaf>(pick(LEAVES))); }

    static Tree leaf(Leaf kind) {
        switch (kind) {
        case TIME:
            return {"t", "t", [](double t) { return Outcome{t, true}; }};
        case CONSTANT:
            return {"2.5", "2.5", [](double) { return Outcome{2.5, false}; }};
        case ZERO:
            return {"0", "0", [](double) { return Outcome{0.0, false}; }};
        case NEGATIVE:
            return {"a", "a", [](double) { return Outcome{-3.0, false}; }};
        case NOISE:
            return {"noise(t)", "noise(t)", [](double t) {
                        float const x = static_cast<float>(t);
                        return Outcome{static_cast<double>(BtNoiseGenerator::getNoise(x, 0, 0)[3]), true};
                    }};
        default:
            return {"sin(t*40)", "sin(t*40)", [](double t) {
                        return Outcome{std::sin(t * 40 * BtExpMath::DEG_TO_RAD), true};
                    }};
        }
    }

    std::mt19937 _random;
};

class ExpressionPrograms : public ExpTest::PackagesTest {};

void expectOutcome(std::string const& text, double time, Outcome const& expected) {
    BtExpEvalReport const report = evaluate(text, time, {{"a", -3.0}});
    ASSERT_TRUE(report.accepted) << text << ": " << report.reason;
    if (std::isnan(expected.value))
        EXPECT_TRUE(std::isnan(report.values[0])) << text << " at " << time;
    else
        EXPECT_EQ(report.values[0], expected.value) << text << " at " << time;
    PxValidityInterval const vi =
        expected.timed ? BtExpMath::getTimeDependentInterval(time) : PxValidityInterval::FULL;
    EXPECT_EQ(PxValidityInterval(report.validityBegin, report.validityEnd), vi) << text << " at " << time;
}

} // namespace

TEST_F(ExpressionPrograms, GiveWhatTheOperatorsGiveOneByOne) {
    Generator generator(20261123);
    int big = 0;
    int unasked = 0; // outcomes that hold for all time although the text reads the time
    for (int i = 0; i < 300; ++i) {
        Tree const tree = i % 10 == 9 ? generator.make(7, true) : generator.make(i % 7);
        big += tree.text.size() > 400;
        for (double time : {-1.5, 0.0, 0.7, 3.0}) {
            Outcome const expected = tree.outcome(time);
            unasked += !expected.timed && tree.text.find('t') != std::string::npos;
            expectOutcome(tree.text, time, expected);
            expectOutcome(tree.apart, time, expected);
        }
    }
    EXPECT_GT(big, 2) << "some trees must be too big for one program";
    EXPECT_GT(unasked, 20) << "some powers must leave a timed exponent unasked";
}
