// What a tool that carries vectors of its own images gets from the motion
// controller base, seen through such a tool in a graph: vectors computed
// unless external ones are connected or the computation is off, the image
// passed on, and handlers told when a vectors input's connection changes.
#include "btMotionControllerBase.h"
#include "motioTestSupport.h"
#include "piToolInterface.h"

#include <memory>

using namespace Qv;
using namespace Qv::MotioTest;

namespace {

std::string const TOOL("Motion Vectors User");

// A tool like the image reader as far as vectors go: an image, external
// vectors of both directions, "Calculate Motion" and "Quality".
class VectorsUserController : public PiToolTopologyInterface,
                              public PiToolInterface,
                              public BtMotionControllerBase,
                              public virtual PiNodeController {
public:
    void createProcNodes(OutputPublisher& publisher) override {
        createVectorComputationProcNodes(publisher, *getNode(), publisher.getInputProcNode("Input"), "Output",
                                         publisher.getInputProcNode("Forward Vectors"),
                                         publisher.getInputProcNode("Backward Vectors"),
                                         publisher.getInputProcNode("Quality"));
    }
    void inputConnected(RCShdPtr<PiInput> const& input) override {
        checkVectorConnectionsChanged(input, input->getConnectedOutput());
    }
    void inputDisconnected(RCShdPtr<PiInput> const& input) override {
        checkVectorConnectionsChanged(input, {});
    }
};

class VectorsUserTool : public PiOstrandToolProtocol {
public:
    VectorsUserTool()
        : PiOstrandToolProtocol(TOOL, PiToolProtocol::getTestCategory(), 1, "Vectors of its own images",
                                TOOL_INTERNAL, PLAIN_TOOL) {}
    void describe(PiToolDescriptor& descriptor) override {
        for (char const* image : {"Input", "Forward Vectors", "Backward Vectors"})
            descriptor.requires_(image, PiSocketType::IMAGE, SINGLE);
        descriptor.requires_(BtMotionControllerBase::getCalculateMotionName(), PiSocketType::INTEGER, SINGLE);
        descriptor.requires_("Quality", PiSocketType::INTEGER, SINGLE);
        for (char const* image : {"Output", "Forward Vectors", "Backward Vectors"})
            descriptor.produces(image, PiSocketType::IMAGE);
    }
    OPtrRet<PiNodeController> createController() const override {
        return std::make_unique<VectorsUserController>();
    }
};

struct Counter : CbHandler<CbEmptyType> {
    void call(CbEmptyType&) override { ++calls; }
    int calls = 0;
};

class MotionControllerBase : public MotioGraphTest {
protected:
    static void SetUpTestSuite() {
        MotioGraphTest::SetUpTestSuite();
        PiToolRegistry::getInstance().registerTool(std::make_unique<VectorsUserTool>());
    }
    static void TearDownTestSuite() {
        PiToolRegistry::getInstance().unregisterTool(PiOstrandToolProtocol::getOstrandToolName(TOOL));
    }

    // A still grey image, so computed vectors are zero.
    RCShdPtr<PiNode> still() {
        RCShdPtr<PiNode> node = colorSource("C", 24, 20, {0.5, 0.5, 0.5});
        node->getInput("Alpha")->setConstantValue(1.0);
        return node;
    }
    RCShdPtr<PiNode> vectors(std::string const& name, std::vector<double> const& v) {
        RCShdPtr<PiNode> node = colorSource(name, 24, 20, v);
        node->getInput("Alpha")->setConstantValue(1.0);
        return node;
    }
    static IxTile show(RCShdPtr<PiNode> const& node, std::string const& output) {
        return PiImageSocket<PiOutput>(node->getOutput(output, true)).getValue(0.0, 0);
    }
};

// What a vector output shows at a pixel, as text: its vector, or "nothing".
std::string shown(IxTile const& tile) {
    // An image without pixels renders as no tile at all.
    if (!tile.isValid() || tile.getPixelRegion().isEmpty())
        return "nothing";
    Rgba const v = pixelAt(tile, 0, 0);
    std::ostringstream text;
    text << v.r << " " << v.g;
    return text.str();
}

} // namespace

TEST_F(MotionControllerBase, ComputesUnlessVectorsAreConnectedOrTheComputationIsOff) {
    struct Case {
        int calculate;
        bool forward, backward; // external vectors connected
        char const* fwdShown;
        char const* bwdShown;
    } const cases[] = {
        {1, false, false, "0 0", "0 0"},          {1, true, false, "1.5 -2", "nothing"},
        {1, false, true, "nothing", "-0.5 0.25"}, {1, true, true, "1.5 -2", "-0.5 0.25"},
        {0, false, false, "nothing", "nothing"},  {0, true, false, "1.5 -2", "nothing"},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(testing::Message() << "calculate " << c.calculate << ", forward " << c.forward
                                        << ", backward " << c.backward);
        RCShdPtr<PiGraph> graph(new PiGraph);
        std::swap(graph, _graph);
        RCShdPtr<PiNode> const source = still();
        RCShdPtr<PiNode> const node = _graph->createNode(TOOL, "T");
        _graph->connect(source->getOutput("Output"), node->getInput("Input"));
        node->getInput("Calculate Motion")->setConstantValue(c.calculate);
        if (c.forward)
            _graph->connect(vectors("F", {1.5, -2.0, 0.0})->getOutput("Output"),
                            node->getInput("Forward Vectors"));
        if (c.backward)
            _graph->connect(vectors("B", {-0.5, 0.25, 0.0})->getOutput("Output"),
                            node->getInput("Backward Vectors"));
        EXPECT_EQ(shown(show(node, "Forward Vectors")), c.fwdShown);
        EXPECT_EQ(shown(show(node, "Backward Vectors")), c.bwdShown);
        EXPECT_EQ(firstDifference(show(node, "Output"), show(source, "Output"), 0.0f), "");
        std::swap(graph, _graph);
    }
}

TEST_F(MotionControllerBase, TellsItsHandlersWhenAVectorsInputIsConnectedOrNot) {
    RCShdPtr<PiNode> const node = _graph->createNode(TOOL, "T");
    auto* base = node->getInterface<BtMotionControllerBase>();
    ASSERT_NE(base, nullptr);
    Counter counter;
    base->addVectorConnectionsChangedCallback(&counter);
    RCShdPtr<PiNode> const source = still();

    _graph->connect(source->getOutput("Output"), node->getInput("Input"));
    EXPECT_EQ(counter.calls, 0);
    _graph->connect(vectors("F", {1.0, 0.0, 0.0})->getOutput("Output"), node->getInput("Forward Vectors"));
    EXPECT_EQ(counter.calls, 1);
    _graph->connect(vectors("B", {1.0, 0.0, 0.0})->getOutput("Output"), node->getInput("Backward Vectors"));
    EXPECT_EQ(counter.calls, 2);
    _graph->disconnect(node->getInput("Forward Vectors"));
    EXPECT_EQ(counter.calls, 3);
    _graph->disconnect(node->getInput("Input"));
    EXPECT_EQ(counter.calls, 3);

    base->removeVectorConnectionsChangedCallback(&counter);
    _graph->disconnect(node->getInput("Backward Vectors"));
    EXPECT_EQ(counter.calls, 3);
    EXPECT_EQ(BtMotionControllerBase::getCalculateMotionName(), "Calculate Motion");
}
