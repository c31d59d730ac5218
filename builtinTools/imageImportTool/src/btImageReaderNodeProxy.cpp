// Proxy levels of the image reader: level n filtered from level n - 1
// (Lanczos2 at half scale, in premultiplied space), never read from a file.
#include "btImageReaderNode.h"
#include "btImageReaderNodeParts.h"
#include "ipScanlineUtil.h"
#include "ixScanline.h"
#include "ixScanlineCache.h"
#include "ixScanlineUtil.h"
#include "ixWriteGuard.h"
#include "pxRequestMgr.h"
#include "stBsBufferFactory.h"
#include "statScalar.h"
#include "statTypes.h"

namespace Qv {

PxImageResult BtImageReaderNode::computeProxyTile(PxImageContext const& context, BtTileKeeper& keeper) const {
    using Rgba = CoRgbaColorTyped<float>;
    int const level = context.getProxyScale();
    GePoint2<int> const& position = context.getTilePosition();
    PxImageResult result = keeper.get(level, position);
    if (result.getTile().isValid() && result.getVI().isNonEmpty())
        return result;
    result = lookInCache(context);
    if (result.getTile().isValid()) {
        keeper.put(level, position, result);
        return result;
    }
    PxRequestMgr& mgr = PxRequestMgr::getInstance();
    mgr.checkCancellation();

    GeRectangle<int> const output = getTilePixels(position).getIntersection(getImagePixels(level));
    GeRectangle<int> const below = getImagePixels(level - 1);
    int constexpr reach = IxScanlineCache<Rgba>::TAPS / 2;
    // The filter's footprint: source pixels 2x - 3 .. 2x + 4 of every output pixel x.
    GeRectangle<int> const footprint = GeRectangle<int>{2 * output.x1 - reach + 1, 2 * output.x2 + reach - 1,
                                                        2 * output.y1 - reach + 1, 2 * output.y2 + reach - 1}
                                           .getIntersection(below);
    GeRectangle<int> const sourceTiles = convertPixelsToTiles(footprint);
    std::vector<PxImageResult> sources;
    std::vector<IxReadGuard> guards;
    for (int ty = sourceTiles.y1; ty < sourceTiles.y2; ++ty)
        for (int tx = sourceTiles.x1; tx < sourceTiles.x2; ++tx) {
            if (getTilePixels({tx, ty}).getIntersection(below).isEmpty())
                continue;
            PxImageResult source = computeTile(
                PxImageContext(context.getTime(), {tx, ty}, level - 1, context.getStream()), keeper);
            guards.emplace_back(source.getTile());
            sources.push_back(std::move(source));
        }

    IxScanlineCache<Rgba> cache(output, footprint);
    IxScanline<Rgba> sourceLine(footprint.getXInterval());
    while (cache.hasNext()) {
        while (cache.needsSourceLine()) {
            sourceLine.readFrom(guards, cache.getSourceRow());
            IxScanlineUtil::multiplyByAlpha(sourceLine, nullptr);
            IpScanlineUtil::lanczos2Filter(cache.getHorizontalBuffer(), sourceLine);
        }
        Rgba const* const* taps = cache.getNext();
        IpScanlineUtil::lanczos2Filter(cache.getVerticalBuffer(), taps);
    }
    cache.flush();

    IxTile const tile = StBsBufferFactory::getInstance().createTile(getPixelFormat(), output, "ProxyTile");
    {
        IxWriteGuard const guard(tile);
        for (int y = output.y1; y < output.y2; ++y) {
            mgr.checkCancellation();
            IxScanline<Rgba>& line = cache.getLine(y);
            IxScanlineUtil::divideByAlpha(line, nullptr);
            line.writeTo(guard, y);
        }
    }
    StatScalar const counted(StatTypes::PROXY_TILE_SCALAR_ID, 1);
    PxValidityInterval interval = PxValidityInterval::createFrameInterval(_rate, context.getTime());
    for (PxImageResult const& source : sources)
        interval.intersect(source.getVI());
    result = PxImageResult(tile, interval);
    storeTile(result, context);
    keeper.put(level, position, result);
    return result;
}

} // namespace Qv
