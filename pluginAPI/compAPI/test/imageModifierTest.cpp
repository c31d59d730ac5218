// The image modifier frame, with a small modifier of the kind the Motio
// family writes: its description, its requirements, and muting.
#include "compTestTools.h"
#include "ixPixelUtil.h"
#include "piImageInputPolicy.h"
#include "piImageModifierProtocol.h"
#include "piImageSocket.h"
#include "piProcBuilder.h"
#include "piProcNodeFactory.h"
#include "pxColorSourceNode.h"
#include "pxImageFormatProtocol.h"
#include "pxImageNode.h"
#include "pxValueNodes.h"

using namespace Qv;
using namespace Qv::CompTest;

namespace {

// Hands its input's tiles on; what matters here is which node is published.
class CopyNode : public PxImageNode {
public:
    CopyNode(PxNode::Init const& init, PxStrongHndl<PxNode const> const& input)
        : PxNode(init), PxImageNode(init, PxNodePtr<PxImageProtocol const>(input)) {}
    PxImageResult getImageResult(PxImageContext const& context) const override {
        return PxUPtr<PxImageProtocol const>(getInput())->getImageResult(context);
    }
};

class CopyController : public PiImageModifier, public virtual PiNodeController {
protected:
    PxStrongHndl<PxImageProtocol> createImageProcNode(OutputPublisher& publisher) override {
        PxNode::Init init;
        PxStrongHndl<CopyNode> node(new CopyNode(init, publisher.getInputProcNode(getSingleInputName())));
        PxNode::init(node);
        return node;
    }
};

template <class T>
PxStrongHndl<PxNode const> constant(T const& value) {
    PxNode::Init init;
    PxStrongHndl<PxNode> node(
        new PxConstantAnimValueNode<T>(init, PxResult<T>(value, PxValidityInterval::FULL)));
    PxNode::init(node);
    return node;
}

// A float image of width by height pixels of one colour, transparent black outside.
PxStrongHndl<PxNode> flatImage(int width, int height, CoRgbaColorTyped<float> const& c) {
    PxNode::Init init;
    PxStrongHndl<PxNode> format(new PxImageFormatNode(
        init, PxImageFormat(IxPixelFormat(IxPixelFormat::RGBA, IxPixelFormat::FLOAT32), Rational(24, 1))));
    PxNode::init(format);
    PxStrongHndl<PxNode> node(new PxColorSourceNode(
        init, format, constant(width), constant(height), constant(CoRgbColorTyped<float>{0, 0, 0}),
        constant(0.0), constant(CoRgbColorTyped<float>{c.r, c.g, c.b}), constant(double(c.a))));
    PxNode::init(node);
    return node;
}

// Paints its whole input's region white: the change the frame mixes back.
class WhiteController : public PiImageModifier, public virtual PiNodeController {
protected:
    PxStrongHndl<PxImageProtocol> createImageProcNode(OutputPublisher&) override {
        return PxStrongHndl<PxImageProtocol>(flatImage(4, 4, {1.0f, 1.0f, 1.0f, 1.0f}));
    }
};

// A plain tool whose output is a flat image; its "Half" output is half as wide.
class FlatController : public PiToolTopologyInterface,
                       public PiToolInterface,
                       public virtual PiNodeController {
public:
    void createProcNodes(OutputPublisher& publisher) override {
        publisher.publish(getNode()->getOutput("Output", true), flatImage(4, 4, {0.2f, 0.4f, 0.6f, 0.8f}));
        publisher.publish(getNode()->getOutput("Half", true), flatImage(2, 4, {0.0f, 0.0f, 0.0f, 0.5f}));
    }
};

// Stands for a tool that forgot the values the frame reads.
class BareController : public CopyController {};

// What a complete modifier declares: its input, a mask, the values the frame reads, its output.
void describeModifier(PiImageModifier::Descriptor& d) {
    PiImageModifier::addSingleImageInput(
        d, PiImageInputPolicy::createPrimary(1, 7, 1, PiImageInputPolicy::RESET_NONE, false), SINGLE);
    PiImageModifier::describeMasking(d);
    d.stores(PiImageModifier::getMuteValueName(), PiValueType::BOOL);
    d.stores(PiImageModifier::getAffectValueName(), PiValueType::INT);
    d.produces(PiImageModifier::getOutputName(), PiSocketType::IMAGE);
}

} // namespace

template <>
void PiImageModifierInfo<CopyController>::describe(PiImageModifier::Descriptor& d) const {
    describeModifier(d);
}

template <>
void PiImageModifierInfo<WhiteController>::describe(PiImageModifier::Descriptor& d) const {
    describeModifier(d);
}

template <>
void PiImageModifierInfo<BareController>::describe(PiImageModifier::Descriptor& d) const {
    PiImageModifier::addSingleImageInput(
        d, PiImageInputPolicy::createPrimary(1, 7, 1, PiImageInputPolicy::RESET_NONE, false), SINGLE);
    d.produces(PiImageModifier::getOutputName(), PiSocketType::IMAGE);
}

namespace {

template <class Controller>
OPtr<PiImageModifierInfo<Controller>> makeTool(std::string const& name) {
    return std::make_unique<PiImageModifierInfo<Controller>>(
        name, PiToolProtocol::getTestCategory(), PiOstrandToolProtocol::getOstrandProductName(),
        PiOstrandToolProtocol::getOstrandManufacturer(), PiOstrandToolProtocol::getOstrandVersionString(), 1,
        name + " for tests", TOOL_LISTED, PLAIN_TOOL);
}

class ImageModifier : public GraphTest {};

} // namespace

TEST_F(ImageModifier, ChecksTheValuesTheFrameReads) {
    EXPECT_TRUE(makeTool<CopyController>("Copy")->checkRequirements());
    EXPECT_FALSE(makeTool<BareController>("Bare")->checkRequirements());
}

TEST_F(ImageModifier, TheSingleInputIsPrimaryAndTheMaskSecondary) {
    ScopedTool tool(makeTool<CopyController>("Copy"));
    RCShdPtr<PiGraph> graph(new PiGraph);
    RCShdPtr<PiNode> node = graph->createNode("Copy", "C");
    auto* modifier = node->getInterface<PiImageModifier>();
    ASSERT_NE(modifier, nullptr);
    EXPECT_EQ(modifier->getPrimaryInput(), node->getInput("Input"));
    auto const mask = rcCast<PiImageInputPolicy const>(node->getInput("Mask")->getPolicy());
    ASSERT_TRUE(mask);
    EXPECT_FALSE(mask->isPrimary());
    EXPECT_FALSE(modifier->isMuted());
    EXPECT_EQ(modifier->getAffect(), PiImageModifier::AFFECT_RGBA);
}

TEST_F(ImageModifier, AMutedNodeHandsItsInputOn) {
    ScopedTool tool(makeTool<CopyController>("Copy"));
    RCShdPtr<PiGraph> graph(new PiGraph);
    RCShdPtr<PiNode> node = graph->createNode("Copy", "C");
    RCShdPtr<PiOutput> output = node->getOutput("Output");
    PxStrongHndl<PxNode const> const input = PiProcBuilder::getInputProcNode(*node->getInput("Input"));
    EXPECT_FALSE(output->getProcNode() == input);

    node->getValue(PiImageModifier::getMuteValueName())->setData(true);
    EXPECT_TRUE(output->getProcNode() == input) << "muted, the output is the input";
    EXPECT_FALSE(PiImageSocket<PiOutput>(output).getValue(0.0, 0).isValid()) << "an unfed input has no pixel";

    node->getInterface<PiImageModifier>()->resetMute();
    EXPECT_FALSE(output->getProcNode() == input);
}

TEST_F(ImageModifier, MuteMaskAndAffectMixTheChangeWithTheInput) {
    ScopedTool white(makeTool<WhiteController>("White"));
    ToolSpec flatSpec;
    flatSpec.name = "Flat";
    flatSpec.describe = [](PiToolDescriptor& d) {
        d.produces("Output", PiSocketType::IMAGE);
        d.produces("Half", PiSocketType::IMAGE);
    };
    flatSpec.createController = [] { return std::make_unique<FlatController>(); };
    ScopedTool flat(flatSpec);
    RCShdPtr<PiGraph> graph(new PiGraph);
    RCShdPtr<PiNode> source = graph->createNode(flat.getName(), "F");
    RCShdPtr<PiNode> node = graph->createNode("White", "W");
    graph->connect(source->getOutput("Output"), node->getInput("Input"));

    using Rgba = CoRgbaColorTyped<float>;
    Rgba const input{0.2f, 0.4f, 0.6f, 0.8f};
    Rgba const changed{1.0f, 1.0f, 1.0f, 1.0f};
    Rgba const halfway{0.6f, 0.7f, 0.8f, 0.9f};
    struct Case {
        char const* what;
        bool muted;
        PiImageModifier::AffectType affect;
        bool masked;
        Rgba left;  // pixel (-1, 0): inside the mask
        Rgba right; // pixel (1, 0): outside the mask
    };
    Case const cases[] = {
        {"everything", false, PiImageModifier::AFFECT_RGBA, false, changed, changed},
        {"muted", true, PiImageModifier::AFFECT_RGBA, false, input, input},
        {"muted and masked", true, PiImageModifier::AFFECT_RGBA, true, input, input},
        {"colour only",
         false,
         PiImageModifier::AFFECT_RGB,
         false,
         {1.0f, 1.0f, 1.0f, 0.8f},
         {1.0f, 1.0f, 1.0f, 0.8f}},
        {"alpha only",
         false,
         PiImageModifier::AFFECT_ALPHA,
         false,
         {0.2f, 0.4f, 0.6f, 1.0f},
         {0.2f, 0.4f, 0.6f, 1.0f}},
        {"masked by half an alpha", false, PiImageModifier::AFFECT_RGBA, true, halfway, input},
        {"masked, colour only", false, PiImageModifier::AFFECT_RGB, true, {0.6f, 0.7f, 0.8f, 0.8f}, input},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.what);
        node->getValue(PiImageModifier::getMuteValueName())->setData(c.muted);
        node->getValue(PiImageModifier::getAffectValueName())->setData(static_cast<int>(c.affect));
        if (c.masked)
            graph->connect(source->getOutput("Half"), node->getInput("Mask"));
        else
            graph->disconnect(node->getInput("Mask"));
        IxTile const image = PiImageSocket<PiOutput>(node->getOutput("Output")).getValue(0.0, 0);
        EXPECT_EQ(image.getPixelRegion(), (GeRectangle<int>{-2, 2, -2, 2}));
        IxReadGuard const guard(image);
        auto near = [](Rgba const& a, Rgba const& b) {
            return std::abs(a.r - b.r) < 1e-6f && std::abs(a.g - b.g) < 1e-6f &&
                   std::abs(a.b - b.b) < 1e-6f && std::abs(a.a - b.a) < 1e-6f;
        };
        EXPECT_TRUE(near(IxPixelUtil::getPixelColor(guard, -1, 0), c.left));
        EXPECT_TRUE(near(IxPixelUtil::getPixelColor(guard, 1, 0), c.right));
    }
}
