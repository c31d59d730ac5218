// The composition graph: nodes, values, connections, undo, rebuilds, events.
#include "compTestTools.h"
#include "piEx.h"
#include "piGraphSearch.h"
#include "piGroupInterface.h"
#include "piGroupTopologyInterface.h"
#include "piGroupUtils.h"
#include "piProcNodeFactory.h"
#include "piSocketUtil.h"
#include "piUndoGuard.h"
#include "pxRequestMgr.h"

#include <chrono>
#include <thread>

using namespace Qv;
using namespace Qv::CompTest;

namespace {

class GraphWithScale : public GraphTest {
protected:
    ScopedTool _tool{scaleTool()};
    RCShdPtr<PiGraph> _graph{new PiGraph};
    PiCommandStack& stack() { return _graph->getCommandStack(); }
    RCShdPtr<PiNode> make(std::string const& name) { return _graph->createNode("Scale", name); }
};

class FlagController : public PiToolTopologyInterface, public virtual PiNodeController {
public:
    void createProcNodes(OutputPublisher& publisher) override {
        publisher.publish(getNode()->getOutputs().front(),
                          PiProcNodeFactory::createGeneratorNode(PiSocketType::BOOLEAN));
    }
};

std::string refusal(std::function<void()> const& action) {
    try {
        action();
    } catch (PiEx::ExGraphError const& error) {
        return error.getReason();
    }
    return "";
}

} // namespace

TEST_F(GraphWithScale, ANewNodeHasItsSocketsValueNodesAndProcessingNodes) {
    RCShdPtr<PiNode> node = make("");
    EXPECT_EQ(node->getName(), "Scale1");
    EXPECT_EQ(scaleOf(node).created, 1);
    EXPECT_EQ(scaleOf(node).builds, 1);
    for (RCShdPtr<PiInput> const& input : node->getInputs()) {
        ASSERT_TRUE(input->hasValueNode()) << input->getName();
        EXPECT_EQ(input->getConnectedOutput()->getNodePtr(), input->getValueNode().get());
        EXPECT_EQ(input->getValueNode()->getName(), "Scale1." + input->getName());
    }
    EXPECT_EQ(node->getInput("Gain")->getValueAt(0), PiVariant(1.0)) << "the policy's default";
    EXPECT_EQ(node->getValue("Label", true)->getData(), PiVariant(std::string()));
    EXPECT_EQ(evaluate(node->getOutput("Output")), 0.0);
    EXPECT_EQ(make("")->getName(), "Scale2");
    EXPECT_THROW(make("Scale2"), PiEx::ExInvalidName);
    EXPECT_THROW(make("a.b"), PiEx::ExInvalidName);
    EXPECT_THROW(node->getInput("Nope", true), PiEx::ExUnknownSocket);
}

TEST_F(GraphWithScale, UndoAndRedoRestoreAValueChangeAndItsResult) {
    RCShdPtr<PiNode> node = make("S");
    node->getInput("Value")->setConstantValue(3.0);
    std::size_t steps = stack().getNbUndoSteps();
    {
        PiUndoGuard guard(stack(), "Set S.Gain");
        node->getInput("Gain")->setConstantValue(0.5);
        node->getInput("Gain")->setConstantValue(2.0);
    }
    EXPECT_EQ(stack().getNbUndoSteps(), steps + 1) << "one guard, one step";
    EXPECT_EQ(stack().getUndoLabel(), "Set S.Gain");
    EXPECT_EQ(evaluate(node->getOutput("Output")), 6.0);

    stack().undo();
    EXPECT_EQ(node->getInput("Gain")->getValueAt(0), PiVariant(1.0));
    EXPECT_EQ(evaluate(node->getOutput("Output")), 3.0);
    EXPECT_EQ(stack().getRedoLabel(), "Set S.Gain");
    stack().redo();
    EXPECT_EQ(node->getInput("Gain")->getValueAt(0), PiVariant(2.0));
    EXPECT_EQ(evaluate(node->getOutput("Output")), 6.0);

    node->getValue("Label")->setData(std::string("main"));
    stack().undo();
    EXPECT_EQ(node->getValue("Label")->getData(), PiVariant(std::string()));
}

TEST_F(GraphWithScale, UndoAndRedoRestoreAConnection) {
    RCShdPtr<PiNode> a = make("A");
    RCShdPtr<PiNode> b = make("B");
    a->getInput("Value")->setConstantValue(4.0);
    b->getInput("Value")->setConstantValue(1.5);
    _graph->connect(a->getOutput("Output"), b->getInput("Value"));
    EXPECT_EQ(b->getInput("Value")->getDriver().get(), a->getOutput("Output").get());
    EXPECT_EQ(evaluate(b->getOutput("Output")), 4.0);
    EXPECT_EQ(stack().getUndoLabel(), "Connect B.Value");

    stack().undo();
    EXPECT_FALSE(b->getInput("Value")->isDriven());
    EXPECT_FALSE(a->getOutput("Output")->isConnected());
    EXPECT_EQ(evaluate(b->getOutput("Output")), 1.5) << "the value node's constant feeds it again";
    stack().redo();
    EXPECT_EQ(evaluate(b->getOutput("Output")), 4.0);

    RCShdPtr<PiNode> c = make("C");
    c->getInput("Value")->setConstantValue(9.0);
    _graph->connect(c->getOutput("Output"), b->getInput("Value"));
    EXPECT_EQ(evaluate(b->getOutput("Output")), 9.0) << "a single input drops what fed it";
    stack().undo();
    EXPECT_EQ(evaluate(b->getOutput("Output")), 4.0) << "and gets it back on undo";
}

TEST_F(GraphWithScale, APolicyRefusesAValueAndNothingChanges) {
    RCShdPtr<PiNode> node = make("S");
    std::size_t steps = stack().getNbUndoSteps();
    struct Case {
        char const* what;
        std::function<void()> set;
    };
    Case const cases[] = {
        {"above the range", [&] { node->getInput("Gain")->setConstantValue(11.0); }},
        {"below the range", [&] { node->getInput("Gain")->setConstantValue(-1.0); }},
        {"a keyframe outside",
         [&] { node->getInput("Gain")->getValueInterface().setKeyframeVariant(1.0, 20.0); }},
    };
    for (Case const& c : cases) {
        std::string reason = refusal(c.set);
        EXPECT_NE(reason.find("input S.Gain refuses"), std::string::npos) << c.what << ": " << reason;
        EXPECT_NE(reason.find("from 0 to 10"), std::string::npos) << c.what;
    }
    EXPECT_EQ(node->getInput("Gain")->getValueAt(0), PiVariant(1.0));
    EXPECT_FALSE(node->getInput("Gain")->getValueInterface().isAnimated());
    EXPECT_EQ(stack().getNbUndoSteps(), steps);
    EXPECT_THROW(node->getInput("Gain")->setConstantValue(std::string("x")), PiEx::ExBadValue);
}

TEST_F(GraphWithScale, AStepLeftByAnExceptionIsTakenBack) {
    RCShdPtr<PiNode> node = make("S");
    std::size_t steps = stack().getNbUndoSteps();
    try {
        PiUndoGuard guard(stack(), "Two changes");
        node->getInput("Value")->setConstantValue(5.0);
        node->getInput("Gain")->setConstantValue(50.0);
    } catch (PiEx::ExValueRefused const&) {
    }
    EXPECT_EQ(node->getInput("Value")->getValueAt(0), PiVariant(0.0));
    EXPECT_EQ(stack().getNbUndoSteps(), steps);
}

TEST_F(GraphWithScale, ConnectionsOfAnotherTypeOrMakingALoopAreRefused) {
    ToolSpec flags;
    flags.name = "Flag";
    flags.describe = [](PiToolDescriptor& d) { d.produces("Output", PiSocketType::BOOLEAN); };
    flags.createController = [] { return std::make_unique<FlagController>(); };
    ScopedTool flagTool(flags);
    RCShdPtr<PiNode> a = make("A");
    RCShdPtr<PiNode> b = make("B");
    RCShdPtr<PiNode> f = _graph->createNode("Flag", "F");
    _graph->connect(a->getOutput("Output"), b->getInput("Value"));
    RCShdPtr<PiGraph> other(new PiGraph);
    RCShdPtr<PiNode> elsewhere = other->createNode("Scale", "X");
    struct Case {
        char const* what;
        RCShdPtr<PiOutput> from;
        RCShdPtr<PiInput> to;
        char const* why;
    };
    Case const cases[] = {
        {"types differ", f->getOutput("Output"), a->getInput("Gain"), "the output gives boolean"},
        {"a loop", b->getOutput("Output"), a->getInput("Gain"), "loop"},
        {"onto itself", a->getOutput("Output"), a->getInput("Value"), "loop"},
        {"another graph", elsewhere->getOutput("Output"), a->getInput("Value"), "not both in this graph"},
    };
    std::size_t steps = stack().getNbUndoSteps();
    for (Case const& c : cases) {
        std::string reason = refusal([&] { _graph->connect(c.from, c.to); });
        EXPECT_NE(reason.find(c.why), std::string::npos) << c.what << ": " << reason;
    }
    EXPECT_EQ(stack().getNbUndoSteps(), steps);
    EXPECT_FALSE(a->getInput("Gain")->isDriven());
}

TEST_F(GraphWithScale, ARebuildLeavesTheOldNodesToTheRequestInFlight) {
    RCShdPtr<PiNode> node = make("S");
    node->getInput("Value")->setConstantValue(2.0);
    struct Gate {
        std::atomic<bool> armed{true};
        std::promise<void> entered;
        std::promise<void> open;
        std::shared_future<void> opened = open.get_future().share();
    };
    auto gate = std::make_shared<Gate>();
    scaleOf(node).gate = [gate] {
        if (gate->armed.exchange(false)) {
            gate->entered.set_value();
            gate->opened.wait();
        }
    };
    scaleOf(node).forceCreateProcNodes();
    int const live = ScaleNode::liveNodes;

    PxRequestMgr& manager = PxRequestMgr::getInstance();
    PxRequestPtr<PxAnimValueRequest<double>> request(new PxAnimValueRequest<double>(
        PxNodePtr<PxAnimValueProtocol<double> const>(node->getOutput("Output")->getProcNode()),
        PxTimeContext(0)));
    manager.postRequest(request, 0);
    ASSERT_EQ(gate->entered.get_future().wait_for(std::chrono::seconds(10)), std::future_status::ready);

    // The node is rebuilt while the request runs in the old one.
    scaleOf(node).gate = {};
    PxNode const* old = node->getOutput("Output")->getProcNode().get();
    scaleOf(node).forceCreateProcNodes();
    EXPECT_NE(node->getOutput("Output")->getProcNode().get(), old);
    EXPECT_EQ(ScaleNode::liveNodes, live + 1) << "the old node is still alive";

    gate->open.set_value();
    manager.waitForRequest(request);
    EXPECT_EQ(request->getValue(), 2.0);
    manager.releaseRequest(request);
    request.reset();
    for (int i = 0; i < 1000 && ScaleNode::liveNodes != live; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    EXPECT_EQ(ScaleNode::liveNodes, live) << "the old node goes with the last work on it";
    EXPECT_EQ(evaluate(node->getOutput("Output")), 2.0);
}

TEST_F(GraphWithScale, KeyframesAreEvaluatedThroughTheProcessingNodes) {
    RCShdPtr<PiNode> node = make("S");
    PiValueInterfaceBase& value = node->getInput("Value")->getValueInterface();
    value.setKeyframeVariant(0.0, 0.0);
    value.setKeyframeVariant(2.0, 10.0);
    PxResult<double> mid = PiTypedAnimSocket<double, PiOutput>(node->getOutput("Output")).getResult(0.5);
    EXPECT_DOUBLE_EQ(mid.getValue(), 2.5);
    EXPECT_EQ(mid.getVI(), PxValidityInterval(0.5, 0.5));
    EXPECT_EQ(evaluate(node->getOutput("Output"), 5.0), 10.0);
    using InputReader = PiTypedAnimSocket<double, PiInput>;
    EXPECT_EQ(InputReader(node->getInput("Value")).getValue(1.0), 5.0);
    stack().undo();
    EXPECT_EQ(value.getKeyframeVariants().size(), 1u);
}

TEST_F(GraphWithScale, AControllerThatDisablesRebuildsKeepsItsNodes) {
    RCShdPtr<PiNode> a = make("A");
    RCShdPtr<PiNode> b = make("B");
    scaleOf(b).frozen = true;
    int builds = scaleOf(b).builds;
    _graph->connect(a->getOutput("Output"), b->getInput("Value"));
    EXPECT_EQ(scaleOf(b).builds, builds);
    scaleOf(b).forceCreateProcNodes();
    EXPECT_EQ(scaleOf(b).builds, builds + 1) << "a forced rebuild runs anyway";
}

TEST_F(GraphWithScale, ValueEventsReachTheirSubscribersOnly) {
    RCShdPtr<PiNode> node = make("S");
    struct Recorder : CbHandler<PiNodeEvent const> {
        std::vector<std::string> seen;
        void call(PiNodeEvent const& event) override {
            if (auto const* changed = dynamic_cast<PiNodeEvent::ValueChanged const*>(&event))
                seen.push_back(changed->getName() + "=" + PiVariantUtil::toString(changed->getValue()));
            else
                seen.push_back("other");
        }
    } recorder;
    PiNodeController& controller = *node->getControllerPtr();
    controller.addCallback(PiNodeEvent::ValueChanged(), &recorder);
    node->getInput("Gain")->setConstantValue(2.0);
    node->getValue("Label")->setData(std::string("x"));
    _graph->renameNode(node, "T");
    stack().undo(); // the name
    stack().undo(); // the label
    EXPECT_EQ(recorder.seen, (std::vector<std::string>{"Gain=2", "Label=x", "Label="}));
    controller.removeCallback(PiNodeEvent::ValueChanged(), &recorder);
    node->getInput("Gain")->setConstantValue(3.0);
    EXPECT_EQ(recorder.seen.size(), 3u);
}

TEST_F(GraphWithScale, DynamicInputsComeAndGoWithUndo) {
    RCShdPtr<PiNode> node = make("S");
    EXPECT_THROW(node->addDynamicInput("Other", PiSocketType::DOUBLE, SINGLE), PiEx::ExSocketRefused);
    RCShdPtr<PiInput> extra = node->addDynamicInput("Extra1", PiSocketType::DOUBLE, SINGLE);
    EXPECT_TRUE(extra->isDynamic());
    EXPECT_TRUE(extra->hasValueNode());
    EXPECT_THROW(node->addDynamicInput("Extra1", PiSocketType::DOUBLE, SINGLE), PiEx::ExSocketRefused);
    stack().undo();
    EXPECT_TRUE(node->getInput("Extra1").isNull());
    stack().redo();
    EXPECT_EQ(node->getInput("Extra1").get(), extra.get());
    node->removeDynamicInput(extra);
    EXPECT_TRUE(node->getInput("Extra1").isNull());
}

TEST_F(GraphWithScale, RemovingANodeDisconnectsItAndUndoBringsItBack) {
    RCShdPtr<PiNode> a = make("A");
    RCShdPtr<PiNode> b = make("B");
    a->getInput("Value")->setConstantValue(7.0);
    _graph->connect(a->getOutput("Output"), b->getInput("Value"));
    _graph->removeNode(a);
    EXPECT_TRUE(_graph->findNode("A").isNull());
    EXPECT_FALSE(b->getInput("Value")->isDriven());
    EXPECT_EQ(evaluate(b->getOutput("Output")), 0.0);
    stack().undo();
    EXPECT_EQ(_graph->getNode("A").get(), a.get());
    EXPECT_EQ(evaluate(b->getOutput("Output")), 7.0);
}

TEST_F(GraphWithScale, AGroupFeedsItsInnerGraphAndPublishesWhatItGives) {
    ScopedTool group(groupTool("Group"));
    RCShdPtr<PiNode> g = _graph->createNode("Group", "G");
    RCShdPtr<PiGraph> inner = g->getInnerGraph();
    ASSERT_TRUE(inner);
    EXPECT_EQ(inner->getBoundaryNodes().size(), 2u);
    RCShdPtr<PiNode> s = inner->createNode("Scale", "Inner");
    inner->connect(inner->getNode("In")->getOutput("Output"), s->getInput("Value"));
    inner->connect(s->getOutput("Output"), inner->getNode("Out")->getInput("Input"));
    g->getInput("In")->setConstantValue(3.0);
    s->getInput("Gain")->setConstantValue(2.0);
    EXPECT_EQ(evaluate(g->getOutput("Out")), 6.0);

    RCShdPtr<PiNode> source = make("Source");
    source->getInput("Value")->setConstantValue(5.0);
    _graph->connect(source->getOutput("Output"), g->getInput("In"));
    EXPECT_EQ(evaluate(g->getOutput("Out")), 10.0) << "a connection outside reaches inside";

    EXPECT_EQ(PiGroupUtils::getName(s, nullptr), "G.Inner");
    EXPECT_EQ(PiGroupUtils::findCommonAncestor(s, s->getInput("Gain")->getValueNode()).get(), g.get());
    EXPECT_TRUE(PiGroupUtils::findCommonAncestor(s, source).isNull());
    EXPECT_THROW(inner->connect(source->getOutput("Output"), s->getInput("Gain")), PiEx::ExConnectionRefused);

    while (stack().getUndoLabel() != "Connect Out.Input")
        stack().undo();
    stack().undo();
    EXPECT_TRUE(g->getOutput("Out")->getProcNode().isNull()) << "nothing inside feeds the output";
}

TEST_F(GraphWithScale, SearchesWalkUpstreamDepthFirstAndDownstreamByLevels) {
    RCShdPtr<PiNode> a = make("A");
    RCShdPtr<PiNode> b = make("B");
    _graph->connect(a->getOutput("Output"), b->getInput("Gain"));
    RCShdPtr<PiNode const> leaf = PiGraphSearch::depthFirst(b, PiIsLeafNode::getPredicate());
    ASSERT_TRUE(leaf);
    EXPECT_EQ(leaf->getName(), "B.Value") << "the first input's branch first";
    leaf = PiGraphSearch::depthFirst(b->getInput("Gain")->getValueNode(), PiIsLeafNode::getPredicate());
    ASSERT_TRUE(leaf);
    EXPECT_EQ(leaf->getName(), "A.Value") << "through the driver to the end of its branch";
    RCShdPtr<PiNode const> owner = PiGraphSearch::heightFirst(
        a->getInput("Value")->getValueNode(), PiIsToolNode::getPredicate() & !PiIsGroupNode::getPredicate());
    ASSERT_TRUE(owner);
    EXPECT_EQ(owner->getName(), "A");
    EXPECT_TRUE(PiGraphSearch::heightFirst(a, PiIsExpressionNode::getPredicate()).isNull());
    EXPECT_EQ(PiSocketUtil::findInput(*_graph, "B.Gain")->getDriver().get(), a->getOutput("Output").get());
    EXPECT_THROW(PiSocketUtil::findOutput(*_graph, "Nobody.Output"), PiEx::ExUnknownNode);
}
