#include "pxImageTexture.h"

#include "assertions.h"
#include "ixScanline.h"
#include "pxConfig.h"

#include <algorithm>
#include <cmath>

namespace Qv {

PxImageTexture::PxImageTexture(PxUPtr<PxImageProtocol const> const& image, PxImageContext const& context,
                               SdTextureParams const& params)
    : _image(image), _context(context), _params(params), _interval(PxValidityInterval::FULL) {
    QV_ASSERT(!_image.isNull());
    _region = PxImageProtocol::computeImagePixelRegion(_image, context.getTimeStreamContext(),
                                                       context.getProxyScale(), _interval);
    GeAffineMatrix2<double> const& transform = _params.textureTransform;
    _placement = {{transform.linear.m00, transform.linear.m10},
                  {transform.linear.m01, transform.linear.m11},
                  {transform.translation.x, transform.translation.y},
                  {double(_region.getWidth()), double(_region.getHeight())},
                  {double(_region.x1), double(_region.y1)}};
}

int PxImageTexture::getBlockWidth() const {
    return PxConfig::getTileSizeX();
}

int PxImageTexture::getBlockHeight() const {
    return PxConfig::getTileSizeY();
}

CoRgbaColorTyped<double> PxImageTexture::lookupPixel(double px, double py) {
    if (_params.filter == SdTextureParams::NEAREST) {
        CoRgbaColorTyped<float> const c =
            texel(static_cast<int>(std::floor(px + 0.5)), static_cast<int>(std::floor(py + 0.5)));
        return {c.r, c.g, c.b, c.a};
    }
    double const fx = std::floor(px);
    double const fy = std::floor(py);
    int const x0 = static_cast<int>(fx);
    int const y0 = static_cast<int>(fy);
    Rgba const c00 = texel(x0, y0);
    Rgba const c10 = texel(x0 + 1, y0);
    Rgba const c01 = texel(x0, y0 + 1);
    Rgba const c11 = texel(x0 + 1, y0 + 1);
    return blend(c00, c10, c01, c11, px - fx, py - fy);
}

CoRgbaColorTyped<float> PxImageTexture::texel(int x, int y) {
    if (_region.isEmpty())
        return getFill();
    if (_params.clampX)
        x = std::clamp(x, _region.x1, _region.x2 - 1);
    if (_params.clampY)
        y = std::clamp(y, _region.y1, _region.y2 - 1);
    if (!_region.contains(x, y))
        return getFill();
    if (!_last || !_last->region.contains(x, y))
        setLast(fetch(PxImageProtocol::convertPixelToTile({x, y})));
    if (!_last->region.contains(x, y))
        return getFill();
    return _last->origin[(y - _last->region.y1) * _last->stride + (x - _last->region.x1)];
}

void PxImageTexture::setLast(Tile const& tile) {
    _last = &tile;
    GeRectangle<int> const inside = tile.region.getIntersection(_region);
    bool const empty = inside.isEmpty();
    _quadLow[0] = empty ? 0 : inside.x1;
    _quadLow[1] = empty ? 0 : inside.y1;
    _quadHigh[0] = empty ? 0 : inside.x2 - 1;
    _quadHigh[1] = empty ? 0 : inside.y2 - 1;
}

PxImageTexture::Tile const& PxImageTexture::fetch(GePoint2<int> const& position) {
    auto const [slot, isNew] = _tiles.try_emplace({position.x, position.y});
    Tile& tile = slot->second;
    if (!isNew)
        return tile;
    PxImageResult const result = _image->getImageResult(_context.atTile(position));
    QV_ASSERT(result.getVI().isNonEmpty());
    result.reduceVI(_interval);
    if (!_hasFill) {
        _fill = result.getFillColor();
        _hasFill = true;
    }
    tile.region = result.getPixelRegion();
    if (tile.region.isEmpty())
        return tile;
    IxReadGuard const guard = result.getTileGuard();
    IxPixelFormat const& format = guard.getPixelFormat();
    if (format.getComps() == IxPixelFormat::RGBA && format.getDepth() == IxPixelFormat::FLOAT32 &&
        guard.getRowBytes() % sizeof(Rgba) == 0) {
        // Already the form lookups read: keep the tile readable and read it in place.
        tile.guard = guard;
        tile.origin = guard.getLineAs<Rgba>(tile.region.y1);
        tile.stride = static_cast<std::ptrdiff_t>(guard.getRowBytes() / sizeof(Rgba));
        return tile;
    }
    std::size_t const width = static_cast<std::size_t>(tile.region.getWidth());
    tile.pixels.resize(width * static_cast<std::size_t>(tile.region.getHeight()));
    for (int y = tile.region.y1; y < tile.region.y2; ++y)
        IxScanline<Rgba>(tile.region.getXInterval(), tile.pixels.data() + (y - tile.region.y1) * width)
            .readFrom(guard, y);
    tile.origin = tile.pixels.data();
    tile.stride = static_cast<std::ptrdiff_t>(width);
    return tile;
}

CoRgbaColorTyped<float> const& PxImageTexture::getFill() {
    if (!_hasFill)
        fetch(_region.isEmpty() ? _context.getTilePosition()
                                : PxImageProtocol::convertPixelToTile({_region.x1, _region.y1}));
    return _fill;
}

} // namespace Qv
