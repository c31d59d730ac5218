#include "btFlowLKTool.h"

#include "btFlowLKProc.h"
#include "btMotionUtils.h"
#include "geRectangleUtil.h"
#include "piImageInputPolicy.h"
#include "piImageModifierProtocol.h"
#include "pxImageNode.h"

namespace Qv {

namespace {

std::string const TOOL_NAME("Lucas-Kanade Flow");
std::string const DESCRIPTION("Computes optical flow motion vectors using Lucas-Kanade algorithm.");
std::string const GRADIENT_NAME("Image Gradient");
std::string const DERIVATIVE_NAME("Image Time Derivative");

// The flow over the gradient's region; each tile reads both inputs two
// pixels beyond it, as far as the image goes, for the windows of its pixels.
class FlowLKPxNode : public PxImageNode {
public:
    FlowLKPxNode(PxNode::Init const& init, PxNodePtr<PxImageProtocol const> const& gradient,
                 PxNodePtr<PxImageProtocol const> const& derivative)
        : PxNode(init), PxImageNode(init, gradient), _derivative(derivative) {
        QV_ASSERT(!_derivative.isNull());
    }
    ~FlowLKPxNode() override { unregisterChild(_derivative); }

    void init() override {
        PxImageNode::init();
        registerChild(_derivative);
    }

    PxImageResult getImageResult(PxImageContext const& context) const override {
        PxUPtr<PxImageProtocol const> const gradient(getInput());
        PxUPtr<PxImageProtocol const> const derivative(_derivative);
        PxValidityInterval interval = PxValidityInterval::FULL;
        GeRectangle<int> const pixelRegion = computeImagePixelRegion(gradient, context.getTimeStreamContext(),
                                                                     context.getProxyScale(), interval);
        GeRectangle<int> const tileRgn = getTilePixels(context.getTilePosition());
        GeRectangle<int> const dstRgn = tileRgn.getIntersection(pixelRegion);
        if (dstRgn.isEmpty())
            return PxImageResult(allocateEmptyImageBuffer(), interval);
        GeRectangle<int> const srcRgn =
            GeRectangleUtil::addBorder(tileRgn, BtFlowLKProc::BORDER).getIntersection(pixelRegion);
        CoRgbaColorTyped<float> const zero = CoRgbaColorTyped<float>::ZERO;
        std::vector<PxImageResult> const gradients =
            getImageTilesInRegion(context, gradient, interval, srcRgn, zero);
        std::vector<PxImageResult> const derivatives =
            getImageTilesInRegion(context, derivative, interval, srcRgn, zero);
        IxTile const tile = allocateImageBuffer(context, dstRgn);
        BtFlowLKProc::process(tile, getGuards(gradients), getGuards(derivatives), srcRgn);
        return PxImageResult(tile, interval);
    }

protected:
    IxPixelFormat::Comps computeImageFormatComps() const override { return IxPixelFormat::RGB; }

private:
    PxNodePtr<PxImageProtocol const> _derivative;
};

class FlowLKController : public PiImageModifier, public virtual PiNodeController {
protected:
    PxStrongHndl<PxImageProtocol> createImageProcNode(OutputPublisher& publisher) override {
        return BtFlowLKTool::createPxNode(publisher.getInputProcNode(GRADIENT_NAME),
                                          publisher.getInputProcNode(DERIVATIVE_NAME));
    }
};

} // namespace

template <>
void PiImageModifierInfo<FlowLKController>::describe(PiImageModifier::Descriptor& descriptor) const {
    BtMotionUtils::describeModifierValues(descriptor);
    descriptor.requires_(GRADIENT_NAME, PiSocketType::IMAGE,
                         PiImageInputPolicy::createPrimary(1, 7, 1, PiImageInputPolicy::RESET_NONE, false),
                         SINGLE);
    descriptor.setPrimaryInput(GRADIENT_NAME);
    descriptor.requires_(
        DERIVATIVE_NAME, PiSocketType::IMAGE,
        PiImageInputPolicy::createSecondary(2, 7, 3, 3, PiImageInputPolicy::RESET_NONE, false), SINGLE);
    descriptor.setMaskingMode(PiImageModifier::MASKING_NONE);
}

void BtFlowLKTool::registerTool() {
    BtMotionUtils::registerInnerTool<FlowLKController>(TOOL_NAME, DESCRIPTION);
}

PxStrongHndl<PxImageProtocol> BtFlowLKTool::createPxNode(PxStrongHndl<PxNode const> const& gradient,
                                                         PxStrongHndl<PxNode const> const& timeDerivative) {
    PxNode::Init init;
    PxStrongHndl<FlowLKPxNode> node(new FlowLKPxNode(init, PxNodePtr<PxImageProtocol const>(gradient),
                                                     PxNodePtr<PxImageProtocol const>(timeDerivative)));
    PxNode::init(node);
    return PxStrongHndl<PxImageProtocol>(node);
}

} // namespace Qv
