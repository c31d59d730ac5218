// The image modifier frame, with a small modifier of the kind the Motio
// family writes: its description, its requirements, and muting.
#include "compTestTools.h"
#include "piImageInputPolicy.h"
#include "piImageModifierProtocol.h"
#include "piImageSocket.h"
#include "piProcBuilder.h"
#include "piProcNodeFactory.h"
#include "pxImageNode.h"

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

// Stands for a tool that forgot the values the frame reads.
class BareController : public CopyController {};

} // namespace

template <>
void PiImageModifierInfo<CopyController>::describe(PiImageModifier::Descriptor& d) const {
    PiImageModifier::addSingleImageInput(
        d, PiImageInputPolicy::createPrimary(1, 7, 1, PiImageInputPolicy::RESET_NONE, false), SINGLE);
    PiImageModifier::describeMasking(d);
    d.stores(PiImageModifier::getMuteValueName(), PiValueType::BOOL);
    d.stores(PiImageModifier::getAffectValueName(), PiValueType::INT);
    d.produces(PiImageModifier::getOutputName(), PiSocketType::IMAGE);
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
