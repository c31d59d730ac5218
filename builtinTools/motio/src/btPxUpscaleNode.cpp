#include "btPxUpscaleNode.h"

#include "assertions.h"
#include "btMotioLevels.h"
#include "btUpscaleProc.h"

#include <algorithm>

namespace Qv {

BtPxUpscaleNode::BtPxUpscaleNode(PxNode::Init const& init, PxNodePtr<PxImageProtocol const> const& image,
                                 PxNodePtr<PxAnimValueProtocol<double> const> const& scale)
    : PxNode(init), PxImageNode(init, image), _scale(scale) {
    QV_ASSERT(!_scale.isNull());
}

BtPxUpscaleNode::~BtPxUpscaleNode() {
    unregisterChild(_scale);
}

void BtPxUpscaleNode::init() {
    PxImageNode::init();
    registerChild(_scale);
}

PxImageResult BtPxUpscaleNode::getImageResult(PxImageContext const& context) const {
    PxUPtr<PxImageProtocol const> const image(getInput());
    PxValidityInterval interval = PxValidityInterval::FULL;
    PxResult<double> scale;
    PxUPtr<PxAnimValueProtocol<double> const>(_scale)->getAnimValue(scale, context);
    scale.reduceVI(interval);

    int const p = context.getProxyScale();
    PxTimeStreamContext const timeStream = context.getTimeStreamContext();
    PxRODResult const rod = image->getImageROD(timeStream);
    rod.reduceVI(interval);
    PxResult<PxImageFormat> const format = image->getImageFormat();
    format.reduceVI(interval);
    double const aspect = format.getValue().getPixelFormat().getAspectRatio().getDouble();
    GeRectangle<int> const pixels = nominalToPixelized(rod.getROD(), aspect, proxyScaleToFactor(p));
    GeRectangle<int> const dstRgn = pixels.getIntersection(getTilePixels(context.getTilePosition()));
    GeRectangle<int> const full = nominalToPixelized(rod.getROD(), aspect, 1.0);
    int const levels = BtMotioLevels::log2ceil(std::min(full.getWidth(), full.getHeight()));
    if (levels < p || dstRgn.isEmpty())
        return PxImageResult(allocateEmptyImageBuffer(), interval);

    GePoint2<int> const& tile = context.getTilePosition();
    PxImageContext const sourceContext(context.getTime(), {tile.x >> 1, tile.y >> 1}, p + 1,
                                       context.getStream());
    GeRectangle<int> const above = nominalToPixelized(
        pixelizedToNominal(dstRgn, aspect, proxyScaleToFactor(p)), aspect, proxyScaleToFactor(p + 1));
    GeRectangle<int> const srcRgn{above.x1 - 1, above.x2 + 1, above.y1 - 1, above.y2 + 1};
    std::vector<PxImageResult> const sources =
        getImageTilesInRegion(sourceContext, image, interval, srcRgn, CoRgbaColorTyped<float>{0, 0, 0, 1});

    IxTile const out = allocateImageBuffer(context, dstRgn);
    BtUpscaleProc(IxWriteGuard(out), srcRgn, static_cast<float>(scale.getValue()))
        .process(getGuards(sources));
    return PxImageResult(out, interval);
}

} // namespace Qv
