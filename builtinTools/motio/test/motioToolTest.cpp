// The "Motio" tool as a composition sees it: its identity, sockets, quality
// setting and vector colours, the image it passes on, the vectors it
// publishes, and that changing the quality reaches them.
#include "btMotioController.h"
#include "btMotioTool.h"
#include "btMotionUtils.h"
#include "motioTestSupport.h"
#include "piCommandStack.h"
#include "piImageInputPolicy.h"
#include "piImageModifier.h"
#include "piShowVectorsControllerHelper.h"
#include "piUserInterface.h"
#include "piValueInterface.h"

#include <cmath>
#include <vector>

using namespace Qv;
using namespace Qv::MotioTest;

namespace {

std::vector<double> const GREEN{0.0, 1.0, 0.0};
std::vector<double> const RED{1.0, 0.0, 0.0};

class MotioTool : public MotioGraphTest {
protected:
    static void SetUpTestSuite() {
        MotioGraphTest::SetUpTestSuite();
        // Registering again replaces the package's entry with an equal one.
        BtMotioTool::registerTool();
    }

    RCShdPtr<PiNode> motio(std::string const& name = "M") { return _graph->createNode("Motio", name); }

    static std::vector<std::string> names(auto const& sockets) {
        std::vector<std::string> result;
        for (auto const& socket : sockets)
            result.push_back(socket->getName());
        return result;
    }

    static std::vector<double> stored(RCShdPtr<PiNode> const& node, std::string const& name) {
        return std::get<std::vector<double>>(node->getValue(name, true)->getData());
    }

    static IxTile renderOutput(RCShdPtr<PiNode> const& node, std::string const& output, double time = 0.0) {
        return PiImageSocket<PiOutput>(node->getOutput(output, true)).getValue(time, 0);
    }

    // The largest vector length of an image of vectors.
    static float longest(IxTile const& vectors) {
        float most = 0.0f;
        IxReadGuard const guard(vectors);
        GeRectangle<int> const& r = vectors.getPixelRegion();
        for (int y = r.y1; y < r.y2; ++y)
            for (int x = r.x1; x < r.x2; ++x) {
                Rgba const v = IxPixelUtil::getPixelColor(guard, x, y);
                most = std::max(most, std::hypot(v.r, v.g));
            }
        return most;
    }
};

} // namespace

TEST_F(MotioTool, IsTheToolOfTheVectorsCategory) {
    RCShdPtr<PiTool const> const tool = registeredTool("Motio");
    ASSERT_TRUE(tool);
    PiToolProtocol const& protocol = tool->getProtocol();
    EXPECT_EQ(protocol.getShortToolName(), BtMotioTool::getToolName());
    EXPECT_EQ(protocol.getCategory(), "Vectors");
    EXPECT_EQ(protocol.getDescription(),
              "Analyzes input images and generates 2D optical flow motion vectors.");
    EXPECT_EQ(protocol.getSchemaNb(), 3);
    EXPECT_FALSE(protocol.isInternal());
    EXPECT_FALSE(protocol.isSuperTool());
    EXPECT_TRUE(tool->isListed());
    EXPECT_EQ(protocol.getManufacturer(), PiOstrandToolProtocol::getOstrandManufacturer());
    EXPECT_EQ(protocol.getProductName(), PiOstrandToolProtocol::getOstrandProductName());
    EXPECT_EQ(protocol.getVersion(), PiOstrandToolProtocol::getOstrandVersionString());
    EXPECT_EQ(protocol.getPrimaryInput(), "Input");
}

TEST_F(MotioTool, TakesAnImageAndAQualityAndGivesTheImageAndBothDirections) {
    RCShdPtr<PiNode> const node = motio();
    EXPECT_EQ(names(node->getInputs()), (std::vector<std::string>{"Input", "Quality"}));
    EXPECT_EQ(names(node->getOutputs()),
              (std::vector<std::string>{"Output", "Forward Vectors", "Backward Vectors"}));
    for (RCShdPtr<PiOutput> const& output : node->getOutputs())
        EXPECT_EQ(output->getType(), PiSocketType::IMAGE) << output->getName();
    EXPECT_EQ(node->getInput("Quality")->getType(), PiSocketType::INTEGER);

    auto const input = rcCast<PiImageInputPolicy const>(node->getInput("Input")->getPolicy());
    ASSERT_TRUE(input);
    EXPECT_TRUE(input->isPrimary());
    EXPECT_EQ(input->getMasks(), (std::vector<int>{1, 7, 1}));
    EXPECT_EQ(input->getResetType(), PiImageInputPolicy::RESET_NONE);
    EXPECT_FALSE(input->getFlag());

    auto* controller = node->getInterface<MotioController>();
    ASSERT_NE(controller, nullptr);
    EXPECT_EQ(controller->getPrimaryInput(), node->getInput("Input"));
    EXPECT_EQ(controller->getPrimaryOutput(), node->getOutput("Output"));
    EXPECT_EQ(controller->getXmlFileName(), "<ToolUiDir>/motio.xml");
    std::string const panel = controller->getXmlDescription();
    for (char const* named :
         {"input=\"Quality\"", "value=\"Forward Vectors Color\"", "value=\"Backward Vectors Color\""})
        EXPECT_NE(panel.find(named), std::string::npos) << named << " in " << panel;
}

TEST_F(MotioTool, QualityRunsFromFullToSixtyFourthAndIsNotAnimated) {
    RCShdPtr<PiNode> const node = motio();
    RCShdPtr<PiInputPolicy const> const policy = node->getInput("Quality")->getPolicy();
    EXPECT_EQ(policy, BtMotioTool::getQualityInputPolicy());
    EXPECT_EQ(policy->getDomainLabels(),
              (std::vector<std::string>{"Full", "Half", "Quarter", "Eighth", "Sixteenth", "Thirty-second",
                                        "Sixty-fourth"}));
    std::vector<PiVariant> const values = policy->getDomain();
    ASSERT_EQ(values.size(), 7u);
    for (int q = 0; q < 7; ++q) {
        EXPECT_EQ(values[q], PiVariant(q));
        EXPECT_TRUE(policy->canSetValue(q)) << q;
    }
    EXPECT_EQ(policy->getDomainLabel(3), "Eighth");
    EXPECT_FALSE(policy->canSetValue(7));
    EXPECT_FALSE(policy->canSetValue(-1));
    EXPECT_FALSE(policy->canAnimate());
    EXPECT_EQ(policy->getDefault(), PiVariant(0));
    EXPECT_EQ(node->getInput("Quality")->getValueAt(0.0), PiVariant(0));
}

TEST_F(MotioTool, ANewNodeDrawsForwardVectorsGreenAndBackwardRed) {
    RCShdPtr<PiNode> const node = motio();
    EXPECT_EQ(node->getValue("Forward Vectors Color", true)->getType(), PiValueType::DOUBLE_ARRAY);
    EXPECT_EQ(stored(node, "Forward Vectors Color"), GREEN);
    EXPECT_EQ(stored(node, "Backward Vectors Color"), RED);
    auto* helper = node->getInterface<PiShowVectorsControllerHelper>();
    ASSERT_NE(helper, nullptr);
    node->getValue("Forward Vectors Color")->setData(std::vector<double>{0.25, 0.5, 1.0});
    EXPECT_EQ(helper->getFwdVectorsColor(), (std::vector<double>{0.25, 0.5, 1.0}));
    // A value that is no colour is drawn in the default one.
    node->getValue("Backward Vectors Color")->setData(std::vector<double>{1.0});
    EXPECT_EQ(helper->getBwdVectorsColor(), RED);
}

TEST_F(MotioTool, ResetPutsTheQualityTheDrawingAndTheColoursBackInOneStep) {
    RCShdPtr<PiNode> const node = motio();
    auto* controller = node->getInterface<MotioController>();
    node->getInput("Quality")->setConstantValue(4);
    node->getValue("Forward Vectors Color")->setData(std::vector<double>{0.5, 0.5, 0.5});
    node->getValue("Backward Vectors Color")->setData(std::vector<double>{0.0, 0.0, 1.0});
    controller->setShowingVectors(true);

    PiCommandStack& stack = _graph->getCommandStack();
    std::size_t const steps = stack.getNbUndoSteps();
    controller->reset();
    EXPECT_EQ(stack.getNbUndoSteps(), steps + 1);
    EXPECT_EQ(node->getInput("Quality")->getValueAt(0.0), PiVariant(0));
    EXPECT_EQ(stored(node, "Forward Vectors Color"), GREEN);
    EXPECT_EQ(stored(node, "Backward Vectors Color"), RED);
    EXPECT_FALSE(controller->isShowingVectors());

    stack.undo();
    EXPECT_EQ(node->getInput("Quality")->getValueAt(0.0), PiVariant(4));
    EXPECT_EQ(stored(node, "Forward Vectors Color"), (std::vector<double>{0.5, 0.5, 0.5}));
    EXPECT_EQ(stored(node, "Backward Vectors Color"), (std::vector<double>{0.0, 0.0, 1.0}));
}

TEST_F(MotioTool, PassesTheImageOnAndFindsNoMotionInAStillOne) {
    RCShdPtr<PiNode> const source = colorSource("C", 24, 20, {0.25, 0.5, 0.75});
    RCShdPtr<PiNode> const node = motio();
    _graph->connect(source->getOutput("Output"), node->getInput("Input"));

    IxTile const image = render(node);
    EXPECT_EQ(firstDifference(image, render(source), 0.0f), "");
    for (char const* output : {"Forward Vectors", "Backward Vectors"}) {
        SCOPED_TRACE(output);
        IxTile const vectors = renderOutput(node, output);
        EXPECT_EQ(vectors.getPixelRegion(), image.getPixelRegion());
        EXPECT_EQ(longest(vectors), 0.0f);
    }
}

TEST_F(MotioTool, HandsOutTheVectorsItPublishes) {
    RCShdPtr<PiNode> const node = motio();
    auto* controller = node->getInterface<MotioController>();
    struct Case {
        RCShdPtr<BtMotioInterface::VectorsData const> data;
        BtMotioTypes::VectorType type;
        char const* output;
    } const cases[] = {
        {controller->getFwdVectorsData(), BtMotioTypes::FORWARD_VECTORS, "Forward Vectors"},
        {controller->getBwdVectorsData(), BtMotioTypes::BACKWARD_VECTORS, "Backward Vectors"},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.output);
        ASSERT_TRUE(c.data);
        EXPECT_EQ(c.data->getType(), c.type);
        EXPECT_EQ(PxStrongHndl<PxNode const>(c.data->getVectors()).get(),
                  node->getOutput(c.output)->getProcNode().get());
    }
}

TEST_F(MotioTool, ConnectsOtherNodesToItsVectors) {
    RCShdPtr<PiNode> const node = motio();
    RCShdPtr<PiNode> const later = _graph->createNode("Backward Warp", "Later");
    RCShdPtr<PiNode> const earlier = _graph->createNode("Backward Warp", "Earlier");
    auto* vectors = node->getInterface<BtMotioInterface>();
    ASSERT_NE(vectors, nullptr);
    vectors->connectFwdVectors(later->getInput("Vectors"));
    vectors->connectBwdVectors(earlier->getInput("Vectors"));
    EXPECT_EQ(later->getInput("Vectors")->getConnectedOutput(), node->getOutput("Forward Vectors"));
    EXPECT_EQ(earlier->getInput("Vectors")->getConnectedOutput(), node->getOutput("Backward Vectors"));
}

TEST_F(MotioTool, AQualityChangeReachesItsVectors) {
    // A grey frame pushed right by 8 pixels at frame 0 and by 10 at frame 1:
    // the hole it leaves on the left grows, so its edge moves 2 pixels.
    RCShdPtr<PiNode> const source = colorSource("C", 64, 48, {0.5, 0.5, 0.5});
    source->getInput("Alpha")->setConstantValue(1.0);
    RCShdPtr<PiNode> const shift = colorSource("V", 64, 48, {0.0, 0.0, 0.0});
    PiValueInterfaceBase& push = shift->getInput("Color")->getValueInterface();
    push.setKeyframeVariant(0.0, std::vector<double>{8.0, 0.0, 0.0});
    push.setKeyframeVariant(1.0 / RATE, std::vector<double>{10.0, 0.0, 0.0});
    RCShdPtr<PiNode> const moved = _graph->createNode("Forward Warp", "W");
    _graph->connect(source->getOutput("Output"), moved->getInput("Input"));
    _graph->connect(shift->getOutput("Output"), moved->getInput("Vectors"));
    RCShdPtr<PiNode> const node = motio();
    _graph->connect(moved->getOutput("Output"), node->getInput("Input"));
    // "Sixteenth": coarser than the top of a 48-pixel side's pyramid (proxy
    // scale 3), so no analysis at all.
    node->getInput("Quality")->setConstantValue(4);

    PxStrongHndl<PxNode const> const published = node->getOutput("Forward Vectors")->getProcNode();
    PxStrongHndl<InvalidationProbe> const above = probe(published);
    EXPECT_EQ(longest(renderOutput(node, "Forward Vectors")), 0.0f);
    node->getInput("Quality")->setConstantValue(0);
    EXPECT_GT(above->getNbInvalidations(), 0);
    // The same chain answers: what it had cached went.
    EXPECT_EQ(node->getOutput("Forward Vectors")->getProcNode().get(), published.get());
    EXPECT_GT(longest(renderOutput(node, "Forward Vectors")), 1.0f);
}
