#include "pxImageTexture.h"

#include "assertions.h"
#include "ixScanline.h"
#include "pxConfig.h"

#include <algorithm>
#include <cmath>
#if defined(__x86_64__)
#include <immintrin.h>
#endif

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

namespace {

bool hasAvx2() {
#if defined(__x86_64__)
    static bool const has = __builtin_cpu_supports("avx2");
    return has;
#else
    return false;
#endif
}

} // namespace

void PxImageTexture::lookupOne(double const* position, Rgba& colour) {
    CoRgbaColorTyped<double> const c = lookup(position[0], position[1]);
    colour = {float(c.r), float(c.g), float(c.b), float(c.a)};
}

void PxImageTexture::lookupRow(double const* positions, int count, CoRgbaColorTyped<float>* colours) {
    if (_params.filter == SdTextureParams::BILINEAR && hasAvx2()) {
        lookupRowWide(positions, count, colours);
        return;
    }
    for (int i = 0; i < count; ++i)
        lookupOne(positions + 2 * i, colours[i]);
}

#if defined(__x86_64__)
// No FMA among the target's features: each product is rounded before its
// sum, as in lookup().
#define QV_WIDE __attribute__((target("avx2"), always_inline)) inline

namespace {

// An (x, y) pair twice: lanes (x, y, x, y).
QV_WIDE __m256d pairs(double const* xy) {
    return _mm256_broadcast_pd(reinterpret_cast<__m128d const*>(xy));
}

// Lane `Lane` of `v` in all four.
template <int Lane>
QV_WIDE __m256d spread(__m256d v) {
    return _mm256_permute4x64_pd(v, Lane * 0x55);
}

QV_WIDE __m256d widen(CoRgbaColorTyped<float> const& c) {
    return _mm256_cvtps_pd(_mm_loadu_ps(&c.r));
}

// blend()'s mix of the four pixels from `row0` on, all components at once.
QV_WIDE __m128 blendWide(CoRgbaColorTyped<float> const* row0, std::ptrdiff_t stride, __m256d ux, __m256d vx,
                         __m256d uy, __m256d vy) {
    CoRgbaColorTyped<float> const* row1 = row0 + stride;
    __m256d const top = _mm256_add_pd(_mm256_mul_pd(ux, widen(row0[0])), _mm256_mul_pd(vx, widen(row0[1])));
    __m256d const bottom =
        _mm256_add_pd(_mm256_mul_pd(ux, widen(row1[0])), _mm256_mul_pd(vx, widen(row1[1])));
    return _mm256_cvtpd_ps(_mm256_add_pd(_mm256_mul_pd(uy, top), _mm256_mul_pd(vy, bottom)));
}

} // namespace

__attribute__((target("avx2"))) void PxImageTexture::lookupRowWide(double const* positions, int count,
                                                                   Rgba* colours) {
    // Two positions side by side; every step is the one lookup() takes, in
    // its order.
    Placement const& m = _placement;
    __m256d const column0 = pairs(m.column0);
    __m256d const column1 = pairs(m.column1);
    __m256d const translation = pairs(m.translation);
    __m256d const size = pairs(m.size);
    __m256d const origin = pairs(m.origin);
    __m256d const half = _mm256_set1_pd(0.5);
    __m256d const one = _mm256_set1_pd(1.0);
    int i = 0;
    for (; i + 2 <= count; i += 2) {
        __m256d const xy = _mm256_loadu_pd(positions + 2 * i);
        __m256d const unit = _mm256_add_pd(_mm256_add_pd(_mm256_mul_pd(column0, _mm256_movedup_pd(xy)),
                                                         _mm256_mul_pd(column1, _mm256_permute_pd(xy, 0xF))),
                                           translation);
        __m256d const p = _mm256_sub_pd(_mm256_add_pd(_mm256_mul_pd(unit, size), origin), half);
        // Read afresh: the last tile may change with any lookup that leaves it.
        __m256d const inside = _mm256_and_pd(_mm256_cmp_pd(p, pairs(_quadLow), _CMP_GE_OQ),
                                             _mm256_cmp_pd(p, pairs(_quadHigh), _CMP_LT_OQ));
        if (_mm256_movemask_pd(inside) != 0xF) {
            lookupOne(positions + 2 * i, colours[i]);
            lookupOne(positions + 2 * i + 2, colours[i + 1]);
            continue;
        }
        __m256d const truncated = _mm256_cvtepi32_pd(_mm256_cvttpd_epi32(p));
        __m256d const down =
            _mm256_sub_pd(truncated, _mm256_and_pd(_mm256_cmp_pd(p, truncated, _CMP_LT_OQ), one));
        __m256d const w = _mm256_sub_pd(p, down);
        __m256d const u = _mm256_sub_pd(one, w);
        alignas(16) int corner[4];
        _mm_store_si128(reinterpret_cast<__m128i*>(corner), _mm256_cvttpd_epi32(down));
        Tile const& last = *_last;
        std::ptrdiff_t const stride = last.stride;
        Rgba const* const first =
            last.origin + (corner[1] - last.region.y1) * stride + (corner[0] - last.region.x1);
        Rgba const* const second =
            last.origin + (corner[3] - last.region.y1) * stride + (corner[2] - last.region.x1);
        _mm_storeu_ps(&colours[i].r,
                      blendWide(first, stride, spread<0>(u), spread<0>(w), spread<1>(u), spread<1>(w)));
        _mm_storeu_ps(&colours[i + 1].r,
                      blendWide(second, stride, spread<2>(u), spread<2>(w), spread<3>(u), spread<3>(w)));
    }
    if (i < count)
        lookupOne(positions + 2 * i, colours[i]);
}
#undef QV_WIDE
#else
void PxImageTexture::lookupRowWide(double const* positions, int count, Rgba* colours) {
    for (int i = 0; i < count; ++i)
        lookupOne(positions + 2 * i, colours[i]);
}
#endif

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
