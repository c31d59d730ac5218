// Inputs that take many connections, and the sockets a group adds to itself.
#include "compTestTools.h"
#include "piEx.h"
#include "piProcBuilder.h"
#include "pxValueNodes.h"

using namespace Qv;
using namespace Qv::CompTest;

namespace {

// Sums every value connected to "Terms", in connection order, and records
// what its topology hears.
class SumNode : public PxAnimValueProtocol<double> {
public:
    SumNode(PxNode::Init const& init, std::vector<PxStrongHndl<PxNode const>> const& terms)
        : PxNode(init), PxAnimValueProtocol<double>(init) {
        for (auto const& term : terms)
            _terms.emplace_back(term);
    }
    ~SumNode() override {
        for (auto const& term : _terms)
            unregisterChild(term);
    }
    void init() override {
        PxNode::init();
        for (auto const& term : _terms)
            registerChild(term);
    }
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        double sum = 0.0;
        PxValidityInterval interval = PxValidityInterval::FULL;
        for (auto const& term : _terms) {
            PxResult<double> part;
            PxUPtr<PxAnimValueProtocol<double> const>(term)->getAnimValue(part, context);
            sum = sum * 10.0 + part.getValue(); // the order shows in the digits
            part.reduceVI(interval);
        }
        result.set(sum, interval);
    }

private:
    std::vector<PxNodePtr<PxAnimValueProtocol<double> const>> _terms;
};

class SumController : public PiToolTopologyInterface,
                      public PiToolInterface,
                      public virtual PiNodeController {
public:
    void createProcNodes(OutputPublisher& publisher) override {
        PxNode::Init init;
        PxStrongHndl<PxNode> node(new SumNode(init, publisher.getInputProcNodes("Terms")));
        PxNode::init(node);
        publisher.publish(getNode()->getOutput("Output", true), node);
    }
    bool canAddInputToComposite(RCShdPtr<PiInput> const& input, RCShdPtr<PiOutput> const&) override {
        return input->getConnectedOutputs().size() < 3;
    }
    void inputAddedToComposite(RCShdPtr<PiInput> const&, int index) override { heard.push_back(index); }
    void inputRemovedFromComposite(RCShdPtr<PiInput> const&, int index) override {
        heard.push_back(-1 - index);
    }
    std::vector<int> heard;
};

ToolSpec sumTool() {
    ToolSpec spec;
    spec.name = "Sum";
    spec.describe = [](PiToolDescriptor& d) {
        d.requires_("Terms", PiSocketType::DOUBLE, MULTIPLE);
        d.produces("Output", PiSocketType::DOUBLE);
    };
    spec.createController = [] { return std::make_unique<SumController>(); };
    return spec;
}

class OpenGroupController : public GroupController {
public:
    bool canAddDynamicInput(std::string const&, PiSocketType, Cardinality) override { return true; }
    bool canAddDynamicOutput(std::string const&, PiSocketType) override { return true; }
    bool canRemoveDynamicOutput(RCShdPtr<PiOutput> const&) override { return true; }
};

} // namespace

TEST_F(GraphTest, AMultipleInputKeepsItsConnectionsInOrder) {
    ScopedTool scale(scaleTool());
    ScopedTool sum(sumTool());
    RCShdPtr<PiGraph> graph(new PiGraph);
    RCShdPtr<PiNode> total = graph->createNode("Sum", "Total");
    RCShdPtr<PiInput> terms = total->getInput("Terms");
    EXPECT_FALSE(terms->hasValueNode()) << "many connections, no value of its own";
    std::vector<RCShdPtr<PiNode>> sources;
    for (double value : {1.0, 2.0, 3.0, 4.0}) {
        RCShdPtr<PiNode> source = graph->createNode("Scale");
        source->getInput("Value")->setConstantValue(value);
        sources.push_back(source);
    }
    for (int i = 0; i < 3; ++i)
        graph->connect(sources[static_cast<std::size_t>(i)]->getOutput("Output"), terms);
    EXPECT_EQ(evaluate(total->getOutput("Output")), 123.0);
    EXPECT_THROW(graph->connect(sources[3]->getOutput("Output"), terms), PiEx::ExConnectionRefused)
        << "the controller takes three at most";

    graph->getCommandStack().undo(); // the last connection goes
    EXPECT_EQ(evaluate(total->getOutput("Output")), 12.0);
    graph->getCommandStack().redo();
    EXPECT_EQ(evaluate(total->getOutput("Output")), 123.0);
    graph->disconnect(terms);
    EXPECT_FALSE(terms->isConnected());
    graph->getCommandStack().undo();
    EXPECT_EQ(evaluate(total->getOutput("Output")), 123.0) << "undo puts every connection back in its place";
    EXPECT_EQ(total->getInterface<SumController>()->heard,
              (std::vector<int>{0, 1, 2, -3, 2, -3, -2, -1, 0, 1, 2}));
}

TEST_F(GraphTest, AGroupGrowsSocketsWithTheirBoundaryNodes) {
    ScopedTool scale(scaleTool());
    ToolSpec spec = groupTool("Open Group");
    spec.createController = [] { return std::make_unique<OpenGroupController>(); };
    ScopedTool group(spec);
    RCShdPtr<PiGraph> graph(new PiGraph);
    RCShdPtr<PiNode> g = graph->createNode("Open Group", "G");
    RCShdPtr<PiGraph> inner = g->getInnerGraph();

    RCShdPtr<PiInput> side = g->addDynamicInput("Side", PiSocketType::DOUBLE, SINGLE);
    RCShdPtr<PiOutput> extra = g->addDynamicOutput("Extra", PiSocketType::DOUBLE);
    ASSERT_TRUE(inner->findBoundaryNode("Side"));
    ASSERT_TRUE(inner->findBoundaryNode("Extra"));
    inner->connect(inner->getNode("Side")->getOutput("Output"), inner->getNode("Extra")->getInput("Input"));
    side->setConstantValue(6.0);
    EXPECT_EQ(evaluate(extra), 6.0) << "a value crosses the group through the new sockets";

    g->removeDynamicOutput(extra);
    EXPECT_TRUE(inner->findBoundaryNode("Extra").isNull());
    EXPECT_TRUE(inner->getNode("Side")->getOutput("Output")->getConnectedInputs().empty());
    graph->getCommandStack().undo();
    ASSERT_TRUE(g->getOutput("Extra"));
    EXPECT_TRUE(inner->findBoundaryNode("Extra"));
}

TEST_F(GraphTest, RenamingKeepsNamesUniqueAndTellsTheController) {
    ScopedTool scale(scaleTool());
    RCShdPtr<PiGraph> graph(new PiGraph);
    RCShdPtr<PiNode> a = graph->createNode("Scale", "A");
    graph->createNode("Scale", "B");
    EXPECT_THROW(graph->renameNode(a, "B"), PiEx::ExInvalidName);
    graph->renameNode(a, "C");
    EXPECT_EQ(a->getInput("Gain")->getValueNode()->getName(), "C.Gain") << "value nodes follow their node";
    EXPECT_EQ(graph->makeUniqueName("Scale"), "Scale1");
    graph->getCommandStack().undo();
    EXPECT_EQ(graph->getNode("A").get(), a.get());
}
