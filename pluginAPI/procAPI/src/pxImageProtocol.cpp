#include "pxImageProtocol.h"

#include "assertions.h"
#include "ipCopy.h"
#include "ipSet.h"
#include "ixTileManip.h"
#include "ixWriteGuard.h"
#include "pxConfig.h"

#include <cmath>

namespace Qv {

namespace {
int floorDiv(int a, int b) {
    return a / b - (a % b != 0 && (a < 0) != (b < 0));
}
int ceilDiv(int a, int b) {
    return -floorDiv(-a, b);
}

// Nominal coordinates are floats, a few units in the last place off: a pixel
// coordinate that is a whole number within that error is taken as that
// number, so that a region read back from its own pixels gives the same
// pixels again.
double tolerance(double v) {
    return 1e-6 + std::abs(v) * 5e-7;
}
int floorTolerant(double v) {
    return static_cast<int>(std::floor(v + tolerance(v)));
}
int ceilTolerant(double v) {
    return static_cast<int>(std::ceil(v - tolerance(v)));
}

// A tile of the same pixels with another fill colour: the tiles of an input
// are shared by its cache, so its fill cannot be changed in place.
struct TileRefill : IxTileManip {
    static IxTile withFill(IxTile const& tile, CoRgbaColorTyped<float> const& fill) {
        if (tile.getFillColor() == fill)
            return tile;
        return createTile(tile.getPixelFormat(), tile.getPixelRegion(), getMemory(tile), fill);
    }
};
} // namespace

GePoint2<int> PxImageProtocol::convertPixelToTile(GePoint2<int> const& pixel) {
    return {floorDiv(pixel.x, PxConfig::getTileSizeX()), floorDiv(pixel.y, PxConfig::getTileSizeY())};
}

GeRectangle<int> PxImageProtocol::convertPixelsToTiles(GeRectangle<int> const& pixels) {
    int const sx = PxConfig::getTileSizeX();
    int const sy = PxConfig::getTileSizeY();
    int const x1 = floorDiv(pixels.x1, sx);
    int const y1 = floorDiv(pixels.y1, sy);
    if (pixels.isEmpty())
        return {x1, x1, y1, y1};
    return {x1, ceilDiv(pixels.x2, sx), y1, ceilDiv(pixels.y2, sy)};
}

GeRectangle<int> PxImageProtocol::convertTilesToPixels(GeRectangle<int> const& tiles) {
    int const sx = PxConfig::getTileSizeX();
    int const sy = PxConfig::getTileSizeY();
    return {tiles.x1 * sx, tiles.x2 * sx, tiles.y1 * sy, tiles.y2 * sy};
}

GeRectangle<int> PxImageProtocol::getTilePixels(GePoint2<int> const& tile) {
    return convertTilesToPixels({tile.x, tile.x + 1, tile.y, tile.y + 1});
}

GeRectangle<int> PxImageProtocol::nominalToPixelized(GeRectangle<float> const& nominal, double aspect,
                                                     double scale) {
    if (nominal.isEmpty()) {
        int const x1 = floorTolerant(nominal.x1 * scale / aspect);
        int const y1 = floorTolerant(nominal.y1 * scale);
        return {x1, x1, y1, y1};
    }
    return {floorTolerant(nominal.x1 * scale / aspect), ceilTolerant(nominal.x2 * scale / aspect),
            floorTolerant(nominal.y1 * scale), ceilTolerant(nominal.y2 * scale)};
}

GeRectangle<float> PxImageProtocol::pixelizedToNominal(GeRectangle<int> const& pixels, double aspect,
                                                       double scale) {
    return {static_cast<float>(pixels.x1 * aspect / scale), static_cast<float>(pixels.x2 * aspect / scale),
            static_cast<float>(pixels.y1 / scale), static_cast<float>(pixels.y2 / scale)};
}

GeRectangle<float> PxImageProtocol::createCenteredNominalROD(int width, int height, double aspect) {
    int const x1 = -(width / 2);
    int const y1 = -(height / 2);
    return pixelizedToNominal({x1, x1 + width, y1, y1 + height}, aspect, 1.0);
}

float PxImageProtocol::proxyScaleToFactor(int proxyScale) {
    return 1.0f / static_cast<float>(1 << proxyScale);
}

GeRectangle<int> PxImageProtocol::computeImagePixelRegion(PxUPtr<PxImageProtocol const> const& node,
                                                          PxTimeStreamContext const& context, int proxyScale,
                                                          PxValidityInterval& interval) {
    PxResult<PxImageFormat> const format = node->getImageFormat();
    format.reduceVI(interval);
    PxRODResult const rod = node->getImageROD(context);
    rod.reduceVI(interval);
    return nominalToPixelized(rod.getROD(), format.getValue().getAspectRatio().getDouble(),
                              proxyScaleToFactor(proxyScale));
}

std::vector<PxImageResult> PxImageProtocol::getImageTilesInRegion(PxImageContext const& context,
                                                                  PxUPtr<PxImageProtocol const> const& input,
                                                                  PxValidityInterval& interval,
                                                                  GeRectangle<int> const& region,
                                                                  CoRgbaColorTyped<float> const& fill) {
    GeRectangle<int> const tiles = convertPixelsToTiles(region);
    std::vector<PxImageResult> results;
    results.reserve(static_cast<std::size_t>(tiles.getWidth()) * static_cast<std::size_t>(tiles.getHeight()));
    for (int ty = tiles.y1; ty < tiles.y2; ++ty)
        for (int tx = tiles.x1; tx < tiles.x2; ++tx) {
            PxImageResult result = input->getImageResult(context.atTile({tx, ty}));
            QV_ASSERT(result.getVI().isNonEmpty());
            result.reduceVI(interval);
            result.setTile(TileRefill::withFill(result.getTile(), fill));
            results.push_back(std::move(result));
        }
    return results;
}

std::vector<IxReadGuard> PxImageProtocol::getGuards(std::vector<PxImageResult> const& results) {
    std::vector<IxReadGuard> guards;
    guards.reserve(results.size());
    for (PxImageResult const& result : results)
        guards.push_back(result.getTileGuard());
    return guards;
}

IxTile PxImageProtocol::createPaddedImage(IxReadGuard const& guard, GeRectangle<int> const& region) {
    IxTile padded(guard.getPixelFormat(), region, guard.getFillColor());
    IxWriteGuard out(padded);
    GeRectangle<int> const inside = region.getIntersection(guard.getPixelRegion());
    if (inside != region)
        ipSet(out, guard.getFillColor(), &region);
    if (!inside.isEmpty())
        ipCopy(out, guard, &inside, &inside);
    return padded;
}

GeRectangle<int> PxImageProtocol::computePixelRegion(std::vector<PxImageResult> const& results) {
    GeRectangle<int> region;
    bool first = true;
    for (PxImageResult const& result : results) {
        GeRectangle<int> const& pixels = result.getPixelRegion();
        if (pixels.isEmpty())
            continue;
        region = first ? pixels : region.getBounding(pixels);
        first = false;
    }
    return region;
}

CoRgbaColorTyped<float> PxImageProtocol::getImageFillColor(PxImageContext const& context,
                                                           PxUPtr<PxImageProtocol const> const& input) {
    return input->getImageResult(context).getFillColor();
}

IxTile PxImageProtocol::allocateImageBuffer(PxImageContext const& context,
                                            GeRectangle<int> const& region) const {
    return allocateImageBuffer(context, CoRgbaColorTyped<float>::ZERO, region);
}

IxTile PxImageProtocol::allocateImageBuffer(PxImageContext const&, CoRgbaColorTyped<float> const& fill,
                                            GeRectangle<int> const& region) const {
    return IxTile(getImageFormat().getValue().getPixelFormat(), region, fill);
}

IxTile PxImageProtocol::allocateEmptyImageBuffer() const {
    return allocateEmptyImageBuffer(CoRgbaColorTyped<float>::ZERO);
}

IxTile PxImageProtocol::allocateEmptyImageBuffer(CoRgbaColorTyped<float> const& fill) const {
    return IxTile(getImageFormat().getValue().getPixelFormat(), GeRectangle<int>{}, fill);
}

} // namespace Qv
