// How long a value holds, and which children are asked for it, in what order:
// the common evaluation, the conditional's one branch, the clock's tick, and
// the clock curves that deliberately report only their children's intervals.
#include "btArithmeticNodes.h"
#include "btConditionalNode.h"
#include "btExpMath.h"
#include "btExpNodeTypes.h"
#include "btLogicNodes.h"
#include "btRandNode.h"
#include "expTestSupport.h"
#include "pxAnimValueRequest.h"

using namespace Qv;
using Qv::ExpTest::evaluate;
using Qv::ExpTest::ProbeNode;

namespace {

using BtExpMath::TICK;
constexpr double LIMIT = PxValidityInterval::TIME_MAX;

class ExpressionIntervals : public ExpTest::PackagesTest {
protected:
    // A probe giving `value` over `vi`, named for the log.
    BtExpNodeTypes::Double probe(std::string name, double value, PxValidityInterval const& vi) {
        PxNode::Init init;
        PxStrongHndl<ProbeNode> node(new ProbeNode(init, std::move(name), value, vi, _log));
        PxNode::init(node);
        return node;
    }
    BtExpNodeTypes::Bool condition(bool value, PxValidityInterval const& vi) {
        // value as 1 < 2 or 2 < 1 of two probes
        return BtExpNodeTypes::asTyped<bool>(BtExpNodeTypes::create<BtIsLessNode>(
            probe("c1", value ? 1.0 : 2.0, vi), probe("c2", value ? 2.0 : 1.0, PxValidityInterval::FULL)));
    }
    std::vector<std::string> takeLog() {
        std::lock_guard guard(_log.lock);
        return std::exchange(_log.entries, {});
    }

    ProbeNode::Log _log;
};

} // namespace

TEST_F(ExpressionIntervals, OfTexts) {
    struct Case {
        char const* text;
        double time;
        PxValidityInterval expected;
    } const cases[] = {
        {"1+2*3", 0.0, PxValidityInterval::FULL},
        {"t", 2.0, {2.0 - TICK, 2.0 + TICK}},
        {"t*0", 2.0, {2.0 - TICK, 2.0 + TICK}}, // a value does not widen what its children allow
        // At the time limits the interval may not reach past them.
        {"t", LIMIT, {LIMIT, LIMIT}},
        {"t", -LIMIT, {-LIMIT, -LIMIT}},
        {"eval(5,t)", 1.0, {1.0 - TICK, 1.0 + TICK}},
        {"eval(t,5)", 1.0, {1.0 - TICK, 1.0 + TICK}}, // about the request's time, not 5
        // One branch only: the branch not taken does not narrow.
        {"if(1<2,5,t)", 3.0, PxValidityInterval::FULL},
        {"if(t<1,5,7)", 0.0, {-TICK, TICK}},
        // A power whose base gives 0 asks nothing of its exponent.
        {"0^t", 2.0, PxValidityInterval::FULL},
        {"pow(-1,t*2)", 2.0, PxValidityInterval::FULL},
        {"1+0^sin(t)*3", 2.0, PxValidityInterval::FULL},
        {"(t-2)^t", 2.0, {2.0 - TICK, 2.0 + TICK}}, // the base follows the clock
        {"2^t", 2.0, {2.0 - TICK, 2.0 + TICK}},
        {"t^2", 2.0, {2.0 - TICK, 2.0 + TICK}},
        // Only square narrows around the time; the other clock curves do not.
        {"square(1,1,0)", 0.25, {0.25 - TICK, 0.25 + TICK}},
        {"sinus(1,1,0)", 0.25, PxValidityInterval::FULL},
        {"easein(0,1)", 0.25, PxValidityInterval::FULL},
        {"easeout(0,1)", 0.25, PxValidityInterval::FULL},
        {"bell(0,1,1)", 0.25, PxValidityInterval::FULL},
        {"rand(5)", 0.25, PxValidityInterval::FULL},
        {"truerand(0,1)", 0.25, PxValidityInterval::FULL},
        {"sinus(t,1,0)", 0.25, {0.25 - TICK, 0.25 + TICK}},
        {"align((t,0,0),(0,0,0),2)", 1.0, {1.0 - TICK, 1.0 + TICK}}, // t at 3, shifted back to 1
        {"align((1,0,0),(0,0,0),2)", 1.0, {PxValidityInterval::TIME_MIN, LIMIT - 2.0}},
    };
    for (Case const& c : cases) {
        BtExpEvalReport const report = evaluate(c.text, c.time);
        ASSERT_TRUE(report.accepted) << c.text << ": " << report.reason;
        EXPECT_EQ(PxValidityInterval(report.validityBegin, report.validityEnd), c.expected)
            << c.text << " at " << c.time << ": [" << report.validityBegin << ", " << report.validityEnd
            << "]";
    }
}

TEST_F(ExpressionIntervals, ChildrenAreAskedInOrderAndIntervalsIntersect) {
    struct Case {
        char const* what;
        BtExpNodeTypes::Node node;
        std::vector<std::string> log;
        PxValidityInterval expected;
    };
    PxValidityInterval const early(-5.0, 2.0);
    PxValidityInterval const late(-1.0, 8.0);
    Case const cases[] = {
        {"binary operators ask the left operand first",
         BtExpNodeTypes::create<BtBinaryDivideNode>(probe("x", 6, early), probe("y", 3, late)),
         {"x@0.500000", "y@0.500000"},
         {-1.0, 2.0}},
        {"mod asks for its divisor first",
         BtExpNodeTypes::create<BtModNode>(probe("x", 6, early), probe("y", 4, late)),
         {"y@0.500000", "x@0.500000"},
         {-1.0, 2.0}},
        {"the conditional asks the taken branch only",
         BtExpNodeTypes::create<BtConditionalNode<double>>(condition(true, {-3.0, 3.0}), probe("x", 1, early),
                                                           probe("y", 2, late)),
         {"c1@0.500000", "c2@0.500000", "x@0.500000"},
         {-3.0, 2.0}},
        {"and the other one when the condition fails",
         BtExpNodeTypes::create<BtConditionalNode<double>>(condition(false, {-3.0, 3.0}),
                                                           probe("x", 1, early), probe("y", 2, late)),
         {"c1@0.500000", "c2@0.500000", "y@0.500000"},
         {-1.0, 3.0}},
        {"&& asks both sides even when the left one is false",
         BtExpNodeTypes::create<BtLogicalAndNode>(condition(false, early), condition(true, late)),
         {"c1@0.500000", "c2@0.500000", "c1@0.500000", "c2@0.500000"},
         {-1.0, 2.0}},
        {"a power whose base gives 0 does not ask its exponent",
         BtExpNodeTypes::create<BtPowNode>(probe("x", 0, early), probe("y", 3, late)),
         {"x@0.500000"},
         early},
        {"nor when it is an operand of a flattened tree",
         BtExpNodeTypes::create<BtBinaryAddNode<double>>(
             BtExpNodeTypes::asTyped<double>(
                 BtExpNodeTypes::create<BtPowNode>(probe("x", -2, early), probe("y", 3, late))),
             probe("z", 1, PxValidityInterval::FULL)),
         {"x@0.500000", "z@0.500000"},
         early},
        {"a power of a base above 0 asks both",
         BtExpNodeTypes::create<BtPowNode>(probe("x", 2, early), probe("y", 3, late)),
         {"x@0.500000", "y@0.500000"},
         {-1.0, 2.0}},
        {"rand takes its seed's interval",
         BtExpNodeTypes::create<BtRandNode>(probe("seed", 5, early)),
         {"seed@0.500000"},
         early},
    };
    for (Case const& c : cases) {
        takeLog();
        PxValidityInterval vi;
        if (auto const d = BtExpNodeTypes::asTyped<double>(c.node); !d.isNull())
            vi = PxAnimValueRequest<double>::evaluate(d, 0.5).getVI();
        else
            vi = PxAnimValueRequest<bool>::evaluate(BtExpNodeTypes::asTyped<bool>(c.node), 0.5).getVI();
        EXPECT_EQ(takeLog(), c.log) << c.what;
        EXPECT_EQ(vi, c.expected) << c.what << ": " << vi.dump();
    }
}
