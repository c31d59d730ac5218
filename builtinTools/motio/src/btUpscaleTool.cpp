#include "btUpscaleTool.h"

#include "btMotionUtils.h"
#include "btPxUpscaleNode.h"
#include "piImageInputPolicy.h"
#include "piImageModifierProtocol.h"
#include "piRangeInputPolicy.h"
#include "pxValueNodes.h"

namespace Qv {

namespace {

std::string const TOOL_NAME("Upscale Proxy");
std::string const SCALE_NAME("Scale");
std::string const XML_FILE_NAME("<ToolUiDir>/upscale.xml");

class UpscaleProxyController : public PiImageModifier, public virtual PiNodeController {
public:
    UpscaleProxyController() : PiImageModifier(XML_FILE_NAME) {}

protected:
    PxStrongHndl<PxImageProtocol> createImageProcNode(OutputPublisher& publisher) override {
        return BtUpscaleTool::createPxNode(publisher.getInputProcNode(getSingleInputName()),
                                           publisher.getInputProcNode(SCALE_NAME));
    }
};

} // namespace

template <>
void PiImageModifierInfo<UpscaleProxyController>::describe(PiImageModifier::Descriptor& d) const {
    PiImageModifier::addSingleImageInput(
        d, PiImageInputPolicy::createPrimary(3, 7, 1, PiImageInputPolicy::RESET_NONE, false), SINGLE);
    d.requires_(SCALE_NAME, PiSocketType::DOUBLE,
                PiRangeInputPolicy<double>::create(0.0, 10.0, 1.0, false, false), SINGLE);
    BtMotionUtils::describeModifierValues(d);
    d.setMaskingMode(PiImageModifier::MASKING_BY_TOOL);
}

void BtUpscaleTool::registerTool() {
    BtMotionUtils::registerInnerTool<UpscaleProxyController>(
        TOOL_NAME,
        "Upscales next proxy level of input by power of two, without changing region of definition.");
}

std::string const& BtUpscaleTool::getToolName() {
    return TOOL_NAME;
}

std::string const& BtUpscaleTool::getScaleInputName() {
    return SCALE_NAME;
}

PxStrongHndl<PxImageProtocol> BtUpscaleTool::createPxNode(PxStrongHndl<PxNode const> const& image,
                                                          PxStrongHndl<PxNode const> const& scale) {
    PxNode::Init init;
    PxStrongHndl<BtPxUpscaleNode> node(new BtPxUpscaleNode(
        init, PxNodePtr<PxImageProtocol const>(image), PxNodePtr<PxAnimValueProtocol<double> const>(scale)));
    PxNode::init(node);
    return PxStrongHndl<PxImageProtocol>(node);
}

PxStrongHndl<PxImageProtocol> BtUpscaleTool::createPxNode(PxStrongHndl<PxNode const> const& image,
                                                          double scale) {
    PxNode::Init init;
    PxStrongHndl<PxNode const> constant(
        new PxConstantAnimValueNode<double>(init, PxResult<double>(scale, PxValidityInterval::FULL)));
    PxNode::init(constant);
    return createPxNode(image, constant);
}

} // namespace Qv
