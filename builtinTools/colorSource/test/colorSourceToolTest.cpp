// The Color Source tool as a composition uses it: its node, its policies,
// and the frame of every image generator that it stands on.
#include "btColorSourceTool.h"
#include "inInitMgr.h"
#include "ixPixelUtil.h"
#include "piEx.h"
#include "piGraph.h"
#include "piImageGenerator.h"
#include "piImageSocket.h"
#include "piOstrandToolProtocol.h"
#include "piProjectSettings.h"
#include "piUndoGuard.h"

#include <gtest/gtest.h>
#include <limits>

using namespace Qv;

namespace {

class ColorSource : public ::testing::Test {
protected:
    static void SetUpTestSuite() { InInitMgr::getInstance().initializeAll(); }

    // A small node, so that whole frames stay cheap.
    RCShdPtr<PiNode> makeNode(std::string const& name = "C") {
        RCShdPtr<PiNode> node = _graph->createNode("Color Source", name);
        node->getInput("Width")->setConstantValue(8);
        node->getInput("Height")->setConstantValue(6);
        return node;
    }

    static void setColour(RCShdPtr<PiNode> const& node, CoRgbaColorTyped<double> const& c) {
        node->getInput("Color")->setConstantValue(std::vector<double>{c.r, c.g, c.b});
        node->getInput("Alpha")->setConstantValue(c.a);
    }

    static IxTile render(RCShdPtr<PiNode> const& node, double time = 0.0) {
        return PiImageSocket<PiOutput>(node->getOutput("Output", true)).getValue(time, 0);
    }

    // Every pixel of the image is `colour`.
    static bool filledWith(IxTile const& tile, CoRgbaColorTyped<float> const& colour) {
        IxReadGuard const guard(tile);
        GeRectangle<int> const& r = tile.getPixelRegion();
        for (int y = r.y1; y < r.y2; ++y)
            for (int x = r.x1; x < r.x2; ++x)
                if (!(IxPixelUtil::getPixelColor(guard, x, y) == colour))
                    return false;
        return !r.isEmpty();
    }

    RCShdPtr<PiGraph> _graph{new PiGraph};
};

} // namespace

TEST_F(ColorSource, IsAListedImageGenerator) {
    RCShdPtr<PiTool const> tool = BtColorSourceTool::getTool();
    ASSERT_TRUE(tool);
    PiToolProtocol const& protocol = tool->getProtocol();
    EXPECT_EQ(tool->getName(), PiOstrandToolProtocol::getOstrandToolName("Color Source"));
    EXPECT_EQ(protocol.getCategory(), PiToolProtocol::getImageGenerationCategory());
    EXPECT_EQ(protocol.getSchemaNb(), 1);
    EXPECT_EQ(protocol.getDescription(), "Generates an image using a given RGB value.");
    EXPECT_EQ(protocol.getManufacturer(), PiOstrandToolProtocol::getOstrandManufacturer());
    EXPECT_TRUE(tool->isListed());
    EXPECT_EQ(protocol.getPrimaryInput(), "");
}

TEST_F(ColorSource, ANewNodeIsOpaqueBlackAtTheProjectsSize) {
    RCShdPtr<PiNode> fresh = _graph->createNode("Color Source", "Fresh");
    PiProjectSettings const& project = PiProjectSettings::getInstance();
    EXPECT_EQ(fresh->getInput("Width")->getValueAt(0.0), project.getValue("ImageWidth"));
    EXPECT_EQ(fresh->getInput("Height")->getValueAt(0.0), project.getValue("ImageHeight"));
    EXPECT_TRUE(PiImageFormatValue(fresh->getValue("Format")).isAssumed());

    RCShdPtr<PiNode> node = makeNode();
    IxTile const image = render(node);
    EXPECT_EQ(image.getPixelRegion(), (GeRectangle<int>{-4, 4, -3, 3}));
    EXPECT_EQ(image.getPixelFormat(), IxPixelFormat(IxPixelFormat::RGBA, IxPixelFormat::FLOAT32));
    EXPECT_TRUE(filledWith(image, {0.0f, 0.0f, 0.0f, 1.0f}));
    EXPECT_EQ(image.getFillColor(), CoRgbaColorTyped<float>::ZERO);
}

TEST_F(ColorSource, ColoursAndAlphasBeyondZeroToOnePassUnchanged) {
    RCShdPtr<PiNode> node = makeNode();
    double const floatMax = std::numeric_limits<float>::max();
    CoRgbaColorTyped<double> const cases[] = {
        {0.25, 0.5, 1.5, 2.0},
        {-1.0, 3.5, 1e-6, -0.5},
        {floatMax, -floatMax, 0.0, 1e30},
    };
    for (CoRgbaColorTyped<double> const& c : cases) {
        SCOPED_TRACE(c.r);
        setColour(node, c);
        EXPECT_TRUE(filledWith(render(node), {float(c.r), float(c.g), float(c.b), float(c.a)}));
    }
}

TEST_F(ColorSource, RefusesOnlyChannelsAFloatCannotHold) {
    RCShdPtr<PiNode> node = makeNode();
    RCShdPtr<PiInput> colour = node->getInput("Color");
    colour->setConstantValue(std::vector<double>{0.25, 0.5, 1.5});
    EXPECT_THROW(colour->getChannel("Red")->setConstantValue(1e39), PiEx::ExValueRefused);
    EXPECT_THROW(colour->setConstantValue(std::vector<double>{0.0, 0.0, -1e39}), PiEx::ExValueRefused);
    EXPECT_EQ(colour->getValueAt(0.0), PiVariant(std::vector<double>{0.25, 0.5, 1.5}))
        << "a refused channel leaves the whole colour as it was";
    EXPECT_NO_THROW(node->getInput("Alpha")->setConstantValue(1e300));
    EXPECT_THROW(node->getInput("Width")->setConstantValue(0), PiEx::ExValueRefused);
}

TEST_F(ColorSource, NodesShareThePoliciesDescribedOnce) {
    RCShdPtr<PiNode> a = makeNode("A");
    RCShdPtr<PiNode> b = makeNode("B");
    ASSERT_EQ(a->getInputs().size(), b->getInputs().size());
    for (std::size_t i = 0; i < a->getInputs().size(); ++i) {
        SCOPED_TRACE(a->getInputs()[i]->getName());
        auto* tool = a->getInterface<PiToolInterface>();
        EXPECT_TRUE(tool->hasExplicitInputPolicy(a->getInputs()[i]));
        EXPECT_EQ(a->getInputs()[i]->getPolicy().get(), b->getInputs()[i]->getPolicy().get());
    }
    EXPECT_EQ(a->getInput("Alpha")->getPolicy()->getDefault(), PiVariant(1.0));
}

TEST_F(ColorSource, TheSizeFollowsTheFormatAndAnUndoTakesBothBack) {
    RCShdPtr<PiNode> node = makeNode();
    PiImageFormat format;
    format.width = 10;
    format.height = 4;
    format.pixelAspect = Rational(2, 1);
    format.rate = Rational(25, 1);
    {
        PiUndoGuard guard(_graph->getCommandStack(), "Set Format");
        PiImageFormatValue(node->getValue("Format")).setValue(format);
    }
    EXPECT_EQ(node->getInput("Width")->getValueAt(0.0), PiVariant(10));
    EXPECT_EQ(node->getInput("Height")->getValueAt(0.0), PiVariant(4));
    IxTile const wide = render(node);
    EXPECT_EQ(wide.getPixelFormat().getAspectRatio(), Rational(2, 1));
    EXPECT_EQ(wide.getPixelRegion().getWidth(), 10);
    auto* footage = node->getInterface<PiFootageInterface>();
    EXPECT_EQ(footage->getRate(node->getOutput("Output")), Rational(25, 1));

    _graph->getCommandStack().undo();
    EXPECT_EQ(node->getInput("Width")->getValueAt(0.0), PiVariant(8));
    EXPECT_EQ(render(node).getPixelFormat().getAspectRatio(), Rational(1, 1));
}

TEST_F(ColorSource, TheDepthRebuildsTheImage) {
    RCShdPtr<PiNode> node = makeNode();
    setColour(node, {0.25, 0.5, 1.5, 2.0});
    node->getInput("Depth")->setConstantValue(16);
    IxTile const image = render(node);
    EXPECT_EQ(image.getPixelFormat().getDepth(), IxPixelFormat::FLOAT16);
    EXPECT_TRUE(filledWith(image, {0.25f, 0.5f, 1.5f, 2.0f}));
    EXPECT_THROW(node->getInput("Depth")->setConstantValue(12), PiEx::ExValueRefused);
}

TEST_F(ColorSource, TheFillShowsOutsideAndResetsWithTheRest) {
    RCShdPtr<PiNode> node = makeNode();
    node->getInput("Fill Color")->getChannel("Green")->setConstantValue(1.0);
    node->getInput("Fill Alpha")->setConstantValue(0.5);
    EXPECT_EQ(render(node).getFillColor(), (CoRgbaColorTyped<float>{0.0f, 1.0f, 0.0f, 0.5f}));
    node->getInterface<PiImageGenerator>()->resetFill();
    EXPECT_EQ(render(node).getFillColor(), CoRgbaColorTyped<float>::ZERO);
}

TEST_F(ColorSource, InAndOutAreTheStartAndEndTimes) {
    RCShdPtr<PiNode> node = makeNode();
    auto* footage = node->getInterface<PiFootageInterface>();
    footage->setInTime(1.5);
    footage->setOutTime(4.0);
    EXPECT_EQ(footage->getInTime(), 1.5);
    EXPECT_EQ(footage->getOutTimeSync(), 4.0);
    EXPECT_EQ(node->getInput("Start Time")->getValueAt(0.0), PiVariant(1.5));
    node->getInterface<PiImageGenerator>()->resetStartEndTime();
    EXPECT_EQ(footage->getInTime(), 0.0);
}

TEST_F(ColorSource, DescribesItsPanel) {
    RCShdPtr<PiNode> node = makeNode();
    auto* ui = node->getInterface<PiUserInterface>();
    EXPECT_EQ(ui->getXmlFileName(), "<ToolUiDir>/colorSource.xml");
    EXPECT_NE(ui->getXmlDescription().find("input=\"Color\""), std::string::npos);
}

TEST_F(ColorSource, AResetIsOneStepBackToOpaqueBlackAtTheProjectsSize) {
    RCShdPtr<PiNode> node = makeNode();
    setColour(node, {0.25, 0.5, 1.5, 2.0});
    node->getInterface<PiImageGenerator>()->reset();
    EXPECT_EQ(node->getInput("Alpha")->getValueAt(0.0), PiVariant(1.0));
    EXPECT_EQ(node->getInput("Color")->getValueAt(0.0), PiVariant(std::vector<double>{0.0, 0.0, 0.0}));
    EXPECT_EQ(node->getInput("Width")->getValueAt(0.0),
              PiProjectSettings::getInstance().getValue("ImageWidth"));
    _graph->getCommandStack().undo();
    EXPECT_EQ(node->getInput("Alpha")->getValueAt(0.0), PiVariant(2.0));
    EXPECT_EQ(node->getInput("Color")->getChannel("Blue")->getValueAt(0.0), PiVariant(1.5));
    EXPECT_EQ(node->getInput("Width")->getValueAt(0.0), PiVariant(8));
}

TEST_F(ColorSource, EachChannelIsAnimatedOnItsOwn) {
    RCShdPtr<PiNode> node = makeNode();
    RCShdPtr<PiInput> colour = node->getInput("Color");
    EXPECT_TRUE(colour->isStructured());
    colour->setConstantValue(std::vector<double>{0.25, 0.5, 1.5});
    PiValueInterfaceBase& red = colour->getChannel("Red")->getValueInterface();
    red.setKeyframeVariant(0.0, 0.0);
    red.setKeyframeVariant(2.0, 1.0);
    EXPECT_TRUE(colour->getValueInterface().isAnimated());
    EXPECT_TRUE(filledWith(render(node, 1.0), {0.5f, 0.5f, 1.5f, 1.0f}));
    EXPECT_TRUE(filledWith(render(node, 5.0), {1.0f, 0.5f, 1.5f, 1.0f}));
    // A keyframe of the whole colour is a keyframe of each channel.
    colour->getValueInterface().setKeyframeVariant(4.0, std::vector<double>{0.0, 1.0, 0.0});
    EXPECT_TRUE(filledWith(render(node, 3.0), {0.5f, 1.0f, 0.0f, 1.0f}));
    // One undo step takes the whole-colour keyframe back from all three.
    _graph->getCommandStack().undo();
    EXPECT_FALSE(colour->getChannel("Green")->getValueInterface().isAnimated());
    EXPECT_TRUE(filledWith(render(node, 3.0), {1.0f, 0.5f, 1.5f, 1.0f}));
}
