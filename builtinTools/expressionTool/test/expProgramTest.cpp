// Operator trees are evaluated as flattened programs: random trees of every
// operator over the time, constants and other nodes, small enough to compile
// and too big to, give what the operators give one node at a time.
#include "btExpArithmetic.h"
#include "btExpMath.h"
#include "btNoiseGenerator.h"
#include "expTestSupport.h"

#include <cmath>
#include <memory>
#include <random>

using namespace Qv;
using Qv::ExpTest::evaluate;

namespace {

// A random expression: its text, and its value computed here, operator by operator.
struct Tree {
    std::string text;
    std::function<double(double)> value;
    bool readsTime = false;
};

class Generator {
public:
    explicit Generator(unsigned seed) : _random(seed) {}

    // A full tree has every leaf at the full depth.
    Tree make(int depth, bool full = false) {
        if (depth == 0 || (!full && pick(4) == 0))
            return leaf();
        if (pick(8) == 0) {
            Tree x = make(depth - 1, full);
            return {"(-" + x.text + ")", [v = x.value](double t) { return 0.0 - v(t); }, x.readsTime};
        }
        static char const* const ops[] = {"+", "-", "*", "/", "^", "%"};
        static BtExpArithmetic::Op const codes[] = {
            BtExpArithmetic::Op::ADD,    BtExpArithmetic::Op::SUBTRACT, BtExpArithmetic::Op::MULTIPLY,
            BtExpArithmetic::Op::DIVIDE, BtExpArithmetic::Op::POWER,    BtExpArithmetic::Op::INTEGER_MOD};
        int const op = pick(6);
        Tree x = make(depth - 1, full);
        Tree y = make(depth - 1, full);
        return {"(" + x.text + ops[op] + y.text + ")",
                [code = codes[op], a = x.value, b = y.value](double t) {
                    double const first = a(t);
                    return BtExpArithmetic::apply(code, first, b(t));
                },
                x.readsTime || y.readsTime};
    }

private:
    int pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(_random); }

    Tree leaf() {
        switch (pick(6)) {
        case 0:
            return {"t", [](double t) { return t; }, true};
        case 1:
            return {"2.5", [](double) { return 2.5; }};
        case 2:
            return {"0", [](double) { return 0.0; }};
        case 3:
            return {"a", [](double) { return -3.0; }};
        case 4:
            return {"noise(t)",
                    [](double t) {
                        return static_cast<double>(
                            BtNoiseGenerator::getNoise(static_cast<float>(t), 0, 0)[3]);
                    },
                    true};
        default:
            return {"sin(t*40)", [](double t) { return std::sin(t * 40 * BtExpMath::DEG_TO_RAD); }, true};
        }
    }

    std::mt19937 _random;
};

class ExpressionPrograms : public ExpTest::PackagesTest {};

} // namespace

TEST_F(ExpressionPrograms, GiveWhatTheOperatorsGiveOneByOne) {
    Generator generator(20261123);
    int big = 0;
    for (int i = 0; i < 300; ++i) {
        Tree const tree = i % 10 == 9 ? generator.make(6, true) : generator.make(i % 7);
        big += tree.text.size() > 400;
        for (double time : {-1.5, 0.0, 0.7, 3.0}) {
            BtExpEvalReport const report = evaluate(tree.text, time, {{"a", -3.0}});
            ASSERT_TRUE(report.accepted) << tree.text << ": " << report.reason;
            double const expected = tree.value(time);
            if (std::isnan(expected))
                EXPECT_TRUE(std::isnan(report.values[0])) << tree.text << " at " << time;
            else
                EXPECT_EQ(report.values[0], expected) << tree.text << " at " << time;
            PxValidityInterval const vi =
                tree.readsTime ? BtExpMath::getTimeDependentInterval(time) : PxValidityInterval::FULL;
            EXPECT_EQ(PxValidityInterval(report.validityBegin, report.validityEnd), vi) << tree.text;
        }
    }
    EXPECT_GT(big, 2) << "some trees must be too big for one program";
}
