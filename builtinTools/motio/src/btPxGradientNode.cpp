#include "btPxGradientNode.h"

#include "geAffineMatrix2.h"
#include "geRectangleUtil.h"
#include "ipGradient.h"

namespace Qv {

namespace {
// The filter takes differences across two pixels: a linear part of 2 on the
// diagonal turns them into derivatives per pixel.
constexpr int FILTER_WIDTH = 3;
GeAffineMatrix2<float> const PER_PIXEL{{2.0f, 0.0f, 0.0f, 2.0f}, {0.0f, 0.0f}};
} // namespace

PxGradientNode::PxGradientNode(PxNode::Init const& init, PxNodePtr<PxImageProtocol const> const& input)
    : PxNode(init), PxImageNode(init, input) {}

PxStrongHndl<PxImageProtocol> PxGradientNode::createPxNode(PxStrongHndl<PxNode const> const& image) {
    PxNode::Init init;
    PxStrongHndl<PxGradientNode> node(new PxGradientNode(init, PxNodePtr<PxImageProtocol const>(image)));
    PxNode::init(node);
    return PxStrongHndl<PxImageProtocol>(node);
}

PxResult<PxImageFormat> PxGradientNode::computeImageFormat() const {
    PxResult<PxImageFormat> result = PxImageNode::computeImageFormat();
    PxImageFormat format = result.getValue();
    format.setPixelFormat(
        IxPixelFormat(IxPixelFormat::RGB, IxPixelFormat::FLOAT16, format.getPixelFormat().getAspectRatio()));
    return PxResult<PxImageFormat>(format, result.getVI());
}

PxImageResult PxGradientNode::getImageResult(PxImageContext const& context) const {
    PxUPtr<PxImageProtocol const> const input(getInput());
    PxValidityInterval interval = PxValidityInterval::FULL;
    GeRectangle<int> const pixelRegion =
        computeImagePixelRegion(input, context.getTimeStreamContext(), context.getProxyScale(), interval);
    GeRectangle<int> const dstRgn = getTilePixels(context.getTilePosition()).getIntersection(pixelRegion);
    if (dstRgn.isEmpty())
        return PxImageResult(allocateEmptyImageBuffer(), interval);
    GeRectangle<int> const srcRgn = GeRectangleUtil::addBorder(dstRgn, 1).getIntersection(pixelRegion);
    std::vector<PxImageResult> const sources = getImageTilesInRegion(
        context, input, interval, srcRgn, CoRgbaColorTyped<float>{0.0f, 0.0f, 0.0f, 1.0f});
    IxTile const tile = allocateImageBuffer(context, CoRgbaColorTyped<float>::ZERO, dstRgn);
    {
        std::vector<IxReadGuard> const guards = getGuards(sources);
        IxWriteGuard const out(tile);
        ipGradient(out, &pixelRegion, guards, srcRgn, PER_PIXEL, FILTER_WIDTH);
    }
    return PxImageResult(tile, interval);
}

} // namespace Qv
