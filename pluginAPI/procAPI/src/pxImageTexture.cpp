#include "pxImageTexture.h"

#include "assertions.h"
#include "ixPixelUtil.h"
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
}

int PxImageTexture::getBlockWidth() const {
    return PxConfig::getTileSizeX();
}

int PxImageTexture::getBlockHeight() const {
    return PxConfig::getTileSizeY();
}

CoRgbaColorTyped<double> PxImageTexture::lookup(double x, double y, GeLinearMatrix2<double> const&) {
    GePoint2<double> const unit = _params.textureTransform * GePoint2<double>{x, y};
    double const px = unit.x * _region.getWidth() + _region.x1 - 0.5;
    double const py = unit.y * _region.getHeight() + _region.y1 - 0.5;
    if (_params.filter == SdTextureParams::NEAREST) {
        CoRgbaColorTyped<float> const c =
            texel(static_cast<int>(std::floor(px + 0.5)), static_cast<int>(std::floor(py + 0.5)));
        return {c.r, c.g, c.b, c.a};
    }
    double const fx = std::floor(px);
    double const fy = std::floor(py);
    int const x0 = static_cast<int>(fx);
    int const y0 = static_cast<int>(fy);
    double const wx = px - fx;
    double const wy = py - fy;
    CoRgbaColorTyped<float> const c00 = texel(x0, y0);
    CoRgbaColorTyped<float> const c10 = texel(x0 + 1, y0);
    CoRgbaColorTyped<float> const c01 = texel(x0, y0 + 1);
    CoRgbaColorTyped<float> const c11 = texel(x0 + 1, y0 + 1);
    auto mix = [&](float a, float b, float c, float d) {
        return (1 - wy) * ((1 - wx) * a + wx * b) + wy * ((1 - wx) * c + wx * d);
    };
    return {mix(c00.r, c10.r, c01.r, c11.r), mix(c00.g, c10.g, c01.g, c11.g), mix(c00.b, c10.b, c01.b, c11.b),
            mix(c00.a, c10.a, c01.a, c11.a)};
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
        _last = &fetch(PxImageProtocol::convertPixelToTile({x, y}));
    if (!_last->region.contains(x, y))
        return getFill();
    std::size_t const index = static_cast<std::size_t>(y - _last->region.y1) * _last->region.getWidth() +
                              static_cast<std::size_t>(x - _last->region.x1);
    return _last->pixels[index];
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
    tile.pixels.resize(static_cast<std::size_t>(tile.region.getWidth()) * tile.region.getHeight());
    IxReadGuard const guard = result.getTileGuard();
    std::size_t index = 0;
    for (int y = tile.region.y1; y < tile.region.y2; ++y)
        for (int x = tile.region.x1; x < tile.region.x2; ++x)
            tile.pixels[index++] = IxPixelUtil::getPixelColor(guard, x, y);
    return tile;
}

CoRgbaColorTyped<float> const& PxImageTexture::getFill() {
    if (!_hasFill)
        fetch(_region.isEmpty() ? _context.getTilePosition()
                                : PxImageProtocol::convertPixelToTile({_region.x1, _region.y1}));
    return _fill;
}

} // namespace Qv
