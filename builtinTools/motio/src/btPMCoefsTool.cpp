#include "btPMCoefsTool.h"

#include "assertions.h"
#include "btMotionUtils.h"
#include "btPMCoefsProc.h"
#include "ixScanline.h"
#include "ixWriteGuard.h"
#include "piImageInputPolicy.h"
#include "piImageModifierProtocol.h"
#include "pxImageNode.h"
#include "pxRequestMgr.h"

namespace Qv {

namespace {

std::string const TOOL_NAME("Perona-Malik Diffusion Coefficients");
std::string const GRADIENT_NAME("Image Gradient");
std::string const TIME_DERIVATIVE_NAME("Image Time Derivative");

using Rgba = CoRgbaColorTyped<float>;

// The coefficients over the gradient's pixels; the format is the gradient's
// as RGB FLOAT32.
class PxPMCoefsNode : public PxImageNode {
public:
    PxPMCoefsNode(PxNode::Init const& init, PxNodePtr<PxImageProtocol const> const& gradient,
                  PxNodePtr<PxImageProtocol const> const& timeDerivative)
        : PxNode(init), PxImageNode(init, gradient), _timeDerivative(timeDerivative) {
        QV_ASSERT(!_timeDerivative.isNull());
    }

    ~PxPMCoefsNode() override { unregisterChild(_timeDerivative); }

    void init() override {
        PxImageNode::init();
        registerChild(_timeDerivative);
    }

    PxImageResult getImageResult(PxImageContext const& context) const override {
        PxUPtr<PxImageProtocol const> const gradient(getInput());
        PxUPtr<PxImageProtocol const> const timeDerivative(_timeDerivative);
        PxValidityInterval interval = PxValidityInterval::FULL;
        GeRectangle<int> const region = computeImagePixelRegion(gradient, context.getTimeStreamContext(),
                                                                context.getProxyScale(), interval)
                                            .getIntersection(getTilePixels(context.getTilePosition()));
        if (region.isEmpty())
            return PxImageResult(allocateEmptyImageBuffer(), interval);
        std::vector<PxImageResult> const gradients =
            getImageTilesInRegion(context, gradient, interval, region, Rgba::ZERO);
        std::vector<PxImageResult> const derivatives =
            getImageTilesInRegion(context, timeDerivative, interval, region, Rgba::ZERO);

        IxTile tile = allocateImageBuffer(context, region);
        {
            std::vector<IxReadGuard> const gradientGuards = getGuards(gradients);
            std::vector<IxReadGuard> const derivativeGuards = getGuards(derivatives);
            IxWriteGuard const out(tile);
            GeInterval<int> const columns = region.getXInterval();
            IxScanline<Rgba> g(columns);
            IxScanline<float> it(columns);
            IxScanline<Rgba> line(columns);
            for (int y = region.y1; y < region.y2; ++y) {
                PxRequestMgr::getInstance().checkCancellation();
                g.readFrom(gradientGuards, y);
                it.readFrom(derivativeGuards, y);
                BtPMCoefsProc::processLine(g.getData(), it.getData(), line.getData(), line.getLength());
                line.writeTo(out, y);
            }
        }
        return PxImageResult(tile, interval);
    }

protected:
    PxResult<PxImageFormat> computeImageFormat() const override {
        PxResult<PxImageFormat> result = PxImageNode::computeImageFormat();
        PxImageFormat format = result.getValue();
        format.setPixelFormat(IxPixelFormat(IxPixelFormat::RGB, IxPixelFormat::FLOAT32,
                                            format.getPixelFormat().getAspectRatio()));
        return PxResult<PxImageFormat>(format, result.getVI());
    }

private:
    PxNodePtr<PxImageProtocol const> _timeDerivative;
};

class PMCoefsController : public PiImageModifier, public virtual PiNodeController {
protected:
    PxStrongHndl<PxImageProtocol> createImageProcNode(OutputPublisher& publisher) override {
        return BtPMCoefsTool::createPxNode(publisher.getInputProcNode(GRADIENT_NAME),
                                           publisher.getInputProcNode(TIME_DERIVATIVE_NAME));
    }
};

} // namespace

template <>
void PiImageModifierInfo<PMCoefsController>::describe(PiImageModifier::Descriptor& d) const {
    d.requires_(GRADIENT_NAME, PiSocketType::IMAGE,
                PiImageInputPolicy::createPrimary(1, 7, 1, PiImageInputPolicy::RESET_NONE, false), SINGLE);
    d.setPrimaryInput(GRADIENT_NAME);
    d.requires_(TIME_DERIVATIVE_NAME, PiSocketType::IMAGE,
                PiImageInputPolicy::createSecondary(2, 7, 3, 3, PiImageInputPolicy::RESET_NONE, false),
                SINGLE);
    BtMotionUtils::describeModifierValues(d);
    d.setMaskingMode(PiImageModifier::MASKING_NONE);
}

void BtPMCoefsTool::registerTool() {
    BtMotionUtils::registerInnerTool<PMCoefsController>(
        TOOL_NAME, "Computes the two Perona and Malik anisotropic diffusion coefficients.");
}

std::string const& BtPMCoefsTool::getToolName() {
    return TOOL_NAME;
}

PxStrongHndl<PxImageProtocol> BtPMCoefsTool::createPxNode(PxStrongHndl<PxNode const> const& gradient,
                                                          PxStrongHndl<PxNode const> const& timeDerivative) {
    PxNode::Init init;
    PxStrongHndl<PxPMCoefsNode> node(new PxPMCoefsNode(init, PxNodePtr<PxImageProtocol const>(gradient),
                                                       PxNodePtr<PxImageProtocol const>(timeDerivative)));
    PxNode::init(node);
    return PxStrongHndl<PxImageProtocol>(node);
}

} // namespace Qv
