#include "btBwdWarpTool.h"

#include "btBwdWarpPxNode.h"
#include "btMotionUtils.h"
#include "piImageInputPolicy.h"

namespace Qv {

namespace {

std::string const TOOL_NAME("Backward Warp");
std::string const VECTORS_NAME("Vectors");

class BwdWarpController : public PiImageModifier, public virtual PiNodeController {
protected:
    PxStrongHndl<PxImageProtocol> createImageProcNode(OutputPublisher& publisher) override {
        return BtBwdWarpTool::createPxNode(publisher.getInputProcNode(getSingleInputName()),
                                           publisher.getInputProcNode(VECTORS_NAME));
    }
};

} // namespace

template <>
void PiImageModifierInfo<BwdWarpController>::describe(PiImageModifier::Descriptor& descriptor) const {
    BtMotionUtils::describeModifierValues(descriptor);
    PiImageModifier::addSingleImageInput(
        descriptor, PiImageInputPolicy::createPrimary(3, 7, 1, PiImageInputPolicy::RESET_NONE, false),
        SINGLE);
    descriptor.requires_(
        VECTORS_NAME, PiSocketType::IMAGE,
        PiImageInputPolicy::createSecondary(1, 7, 3, 3, PiImageInputPolicy::RESET_NONE, false), SINGLE);
    PiImageModifier::describeMasking(descriptor);
}

void BtBwdWarpTool::registerTool() {
    BtMotionUtils::registerInnerTool<BwdWarpController>(TOOL_NAME, "Backward warps image based on vectors");
}

std::string const& BtBwdWarpTool::getToolName() {
    return TOOL_NAME;
}

std::string const& BtBwdWarpTool::getVectorsInputName() {
    return VECTORS_NAME;
}

PxStrongHndl<PxImageProtocol> BtBwdWarpTool::createPxNode(PxStrongHndl<PxNode const> const& image,
                                                          PxStrongHndl<PxNode const> const& vectors) {
    PxNode::Init init;
    PxStrongHndl<BwdWarpPxNode> node(new BwdWarpPxNode(init, PxNodePtr<PxImageProtocol const>(image),
                                                       PxNodePtr<PxImageProtocol const>(vectors)));
    PxNode::init(node);
    return PxStrongHndl<PxImageProtocol>(node);
}

} // namespace Qv
