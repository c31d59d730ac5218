#include "btFwdWarpTool.h"

#include "btFwdWarpPxNode.h"
#include "btMotionUtils.h"
#include "piImageInputPolicy.h"

namespace Qv {

namespace {

std::string const TOOL_NAME("Forward Warp");
std::string const VECTORS_NAME("Vectors");

class FwdWarpController : public PiImageModifier, public virtual PiNodeController {
protected:
    PxStrongHndl<PxImageProtocol> createImageProcNode(OutputPublisher& publisher) override {
        return BtFwdWarpTool::createPxNode(publisher.getInputProcNode(getSingleInputName()),
                                           publisher.getInputProcNode(VECTORS_NAME));
    }
};

} // namespace

template <>
void PiImageModifierInfo<FwdWarpController>::describe(PiImageModifier::Descriptor& descriptor) const {
    BtMotionUtils::describeModifierValues(descriptor);
    PiImageModifier::addSingleImageInput(
        descriptor, PiImageInputPolicy::createPrimary(3, 7, 1, PiImageInputPolicy::RESET_NONE, false),
        SINGLE);
    descriptor.requires_(
        VECTORS_NAME, PiSocketType::IMAGE,
        PiImageInputPolicy::createSecondary(3, 7, 3, 3, PiImageInputPolicy::RESET_NONE, false), SINGLE);
    descriptor.setMaskingMode(PiImageModifier::MASKING_BY_TOOL);
}

void BtFwdWarpTool::registerTool() {
    BtMotionUtils::registerInnerTool<FwdWarpController>(
        TOOL_NAME,
        "Forward warps input image using motion vectors. Warping is done in pixelized coordinates, "
        "without regard to pixel aspect ratio or proxy scale of either input.");
}

std::string const& BtFwdWarpTool::getToolName() {
    return TOOL_NAME;
}

std::string const& BtFwdWarpTool::getVectorsInputName() {
    return VECTORS_NAME;
}

PxStrongHndl<PxImageProtocol> BtFwdWarpTool::createPxNode(PxStrongHndl<PxNode const> const& image,
                                                          PxStrongHndl<PxNode const> const& vectors) {
    PxNode::Init init;
    PxStrongHndl<FwdWarpPxNode> node(new FwdWarpPxNode(init, PxNodePtr<PxImageProtocol const>(image),
                                                       PxNodePtr<PxImageProtocol const>(vectors)));
    PxNode::init(node);
    return PxStrongHndl<PxImageProtocol>(node);
}

} // namespace Qv
