#pragma once
// Reads an image at arbitrary positions, as warps do: tiles are fetched from
// the image node when a lookup first needs them and kept for the texture's
// life, as RGBA floats: a tile already of that form is read in place (the
// texture holds read access to it meanwhile), any other is converted once,
// row by row. A texture belongs to the request that made it: one worker at
// a time.
//
// Positions are taken to unit coordinates by the parameters' transform, then
// to pixel positions, pixel (x, y) having its centre at (x + 0.5, y + 0.5)
// of the pixel region; so with the transform u = (x + 0.5 - x1) / width,
// v = (y + 0.5 - y1) / height a lookup at a whole (x, y) gives pixel (x, y)
// exactly, with either filter. Outside the pixels, the parameters choose
// between the edge pixels and the fill colour (SdTextureParams).
#include "coColor.h"
#include "geLinearMatrix2.h"
#include "ixReadGuard.h"
#include "pxImageProtocol.h"
#include "sdTextureParams.h"

#include <cstddef>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif
#include <map>
#include <type_traits>
#include <utility>
#include <vector>

namespace Qv {

class PxImageTexture {
public:
    // The image at the context's time, proxy scale and stream.
    PxImageTexture(PxUPtr<PxImageProtocol const> const& image, PxImageContext const& context,
                   SdTextureParams const& params);

    // The colour at a position. The derivative matrix (how positions move per
    // output pixel) is accepted for filters that widen with it; NEAREST and
    // BILINEAR do not use it.
    CoRgbaColorTyped<double> lookup(double x, double y, GeLinearMatrix2<double> const& derivatives = {});
    // The colours at `count` positions given as (x, y) pairs, each what
    // lookup() gives there with the identity derivative matrix, rounded to
    // floats: the same to the bit, in fewer steps where the processor allows.
    void lookupRow(double const* positions, int count, CoRgbaColorTyped<float>* colours);

    // The block a caller should work in so that its lookups stay within few
    // tiles: the tile size.
    int getBlockWidth() const;
    int getBlockHeight() const;
    // The image's pixel region at the context's scale.
    GeRectangle<int> const& getPixelRegion() const { return _region; }
    // Narrows `interval` to what every read so far holds for.
    void accumulateVI(PxValidityInterval& interval) const { interval.intersect(_interval); }

private:
    using Rgba = CoRgbaColorTyped<float>;

    struct Tile {
        GeRectangle<int> region;
        // Pixel (region.x1, region.y1), and the pixels from one row to the next.
        Rgba const* origin = nullptr;
        std::ptrdiff_t stride = 0;
        // The tile's own pixels when they are RGBA floats already, else their conversion.
        IxReadGuard guard;
        std::vector<Rgba> pixels;
    };

    // Where the four pixels around a position all lie in the last tile read
    // (and in the image's pixels, so that neither the clamp nor the fill
    // applies), they are read straight from it; the rest, and NEAREST, go
    // through texel() one pixel at a time.
    CoRgbaColorTyped<double> lookupPixel(double px, double py);
    // lookupRow() in 256-bit lanes, two positions at a time, for processors
    // with AVX2; BILINEAR only.
    void lookupRowWide(double const* positions, int count, Rgba* colours);
    void lookupOne(double const* position, Rgba& colour);
    // The bilinear mix of the pixels at (x0, y0), (x0 + 1, y0), (x0, y0 + 1)
    // and (x0 + 1, y0 + 1), with weights wx and wy of the second column and row.
    static CoRgbaColorTyped<double> blend(Rgba const& c00, Rgba const& c10, Rgba const& c01, Rgba const& c11,
                                          double wx, double wy);
    CoRgbaColorTyped<float> texel(int x, int y);
    Tile const& fetch(GePoint2<int> const& tile);
    CoRgbaColorTyped<float> const& getFill();
    void setLast(Tile const& tile);

    PxUPtr<PxImageProtocol const> _image;
    PxImageContext _context;
    SdTextureParams _params;
    GeRectangle<int> _region;
    // The way from a position to a pixel position, as (x, y) pairs: the
    // columns of the transform's linear part, its translation, then the
    // pixel region's size and origin.
    struct alignas(16) Placement {
        double column0[2];
        double column1[2];
        double translation[2];
        double size[2];
        double origin[2];
    } _placement;
    // The last tile's pixels within the image's, less the last column and
    // row: the pixel positions in [low, high) have their 2x2 neighbourhood in
    // the tile whole. Empty while there is no last tile.
    alignas(16) double _quadLow[2] = {0, 0};
    alignas(16) double _quadHigh[2] = {0, 0};
    PxValidityInterval _interval;
    std::map<std::pair<int, int>, Tile> _tiles;
    Tile const* _last = nullptr;
    bool _hasFill = false;
    CoRgbaColorTyped<float> _fill;
};

inline CoRgbaColorTyped<double> PxImageTexture::lookup(double x, double y, GeLinearMatrix2<double> const&) {
    Placement const& m = _placement;
#if defined(__SSE2__)
    // x and y side by side, each step one instruction for both, in the
    // order of the form below: the same results.
    __m128d const unit = _mm_add_pd(_mm_add_pd(_mm_mul_pd(_mm_load_pd(m.column0), _mm_set1_pd(x)),
                                               _mm_mul_pd(_mm_load_pd(m.column1), _mm_set1_pd(y))),
                                    _mm_load_pd(m.translation));
    __m128d const p = _mm_sub_pd(_mm_add_pd(_mm_mul_pd(unit, _mm_load_pd(m.size)), _mm_load_pd(m.origin)),
                                 _mm_set1_pd(0.5));
    // The range check first (NaN fails it), so that floor() can be a
    // truncation, corrected below zero.
    __m128d const inside =
        _mm_and_pd(_mm_cmpge_pd(p, _mm_load_pd(_quadLow)), _mm_cmplt_pd(p, _mm_load_pd(_quadHigh)));
    if (_params.filter != SdTextureParams::BILINEAR || _mm_movemask_pd(inside) != 3)
        return lookupPixel(_mm_cvtsd_f64(p), _mm_cvtsd_f64(_mm_unpackhi_pd(p, p)));
    __m128d const truncated = _mm_cvtepi32_pd(_mm_cvttpd_epi32(p));
    __m128d const down = _mm_sub_pd(truncated, _mm_and_pd(_mm_cmplt_pd(p, truncated), _mm_set1_pd(1.0)));
    __m128d const w = _mm_sub_pd(p, down);
    __m128i const corner = _mm_cvttpd_epi32(down);
    int const x0 = _mm_cvtsi128_si32(corner);
    int const y0 = _mm_cvtsi128_si32(_mm_shuffle_epi32(corner, 1));
    double const wx = _mm_cvtsd_f64(w);
    double const wy = _mm_cvtsd_f64(_mm_unpackhi_pd(w, w));
#else
    double const ux = m.column0[0] * x + m.column1[0] * y + m.translation[0];
    double const uy = m.column0[1] * x + m.column1[1] * y + m.translation[1];
    double const px = ux * m.size[0] + m.origin[0] - 0.5;
    double const py = uy * m.size[1] + m.origin[1] - 0.5;
    // The range check first (NaN fails it), so that floor() can be a
    // truncation, corrected below zero.
    if (_params.filter != SdTextureParams::BILINEAR ||
        !(_quadLow[0] <= px && px < _quadHigh[0] && _quadLow[1] <= py && py < _quadHigh[1]))
        return lookupPixel(px, py);
    int const tx = static_cast<int>(px);
    int const ty = static_cast<int>(py);
    int const x0 = tx - (px < tx);
    int const y0 = ty - (py < ty);
    double const wx = px - x0;
    double const wy = py - y0;
#endif
    Rgba const* row0 = _last->origin + (y0 - _last->region.y1) * _last->stride + (x0 - _last->region.x1);
    Rgba const* row1 = row0 + _last->stride;
    return blend(row0[0], row0[1], row1[0], row1[1], wx, wy);
}

inline CoRgbaColorTyped<double> PxImageTexture::blend(Rgba const& c00, Rgba const& c10, Rgba const& c01,
                                                      Rgba const& c11, double wx, double wy) {
#if defined(__SSE2__)
    // The same operations in the same order as below, two components at a
    // time: the results are the same to the bit.
    __m128d const ux = _mm_set1_pd(1 - wx);
    __m128d const vx = _mm_set1_pd(wx);
    __m128d const uy = _mm_set1_pd(1 - wy);
    __m128d const vy = _mm_set1_pd(wy);
    auto mix = [&](__m128d a, __m128d b, __m128d c, __m128d d) {
        return _mm_add_pd(_mm_mul_pd(uy, _mm_add_pd(_mm_mul_pd(ux, a), _mm_mul_pd(vx, b))),
                          _mm_mul_pd(vy, _mm_add_pd(_mm_mul_pd(ux, c), _mm_mul_pd(vx, d))));
    };
    // A colour is four floats in a row.
    static_assert(sizeof(Rgba) == 4 * sizeof(float) && std::is_standard_layout_v<Rgba>);
    __m128 const a = _mm_loadu_ps(&c00.r);
    __m128 const b = _mm_loadu_ps(&c10.r);
    __m128 const c = _mm_loadu_ps(&c01.r);
    __m128 const d = _mm_loadu_ps(&c11.r);
    __m128d const rg = mix(_mm_cvtps_pd(a), _mm_cvtps_pd(b), _mm_cvtps_pd(c), _mm_cvtps_pd(d));
    __m128d const ba = mix(_mm_cvtps_pd(_mm_movehl_ps(a, a)), _mm_cvtps_pd(_mm_movehl_ps(b, b)),
                           _mm_cvtps_pd(_mm_movehl_ps(c, c)), _mm_cvtps_pd(_mm_movehl_ps(d, d)));
    CoRgbaColorTyped<double> result;
    _mm_storel_pd(&result.r, rg);
    _mm_storeh_pd(&result.g, rg);
    _mm_storel_pd(&result.b, ba);
    _mm_storeh_pd(&result.a, ba);
    return result;
#else
    auto mix = [&](float a, float b, float c, float d) {
        return (1 - wy) * ((1 - wx) * a + wx * b) + wy * ((1 - wx) * c + wx * d);
    };
    return {mix(c00.r, c10.r, c01.r, c11.r), mix(c00.g, c10.g, c01.g, c11.g), mix(c00.b, c10.b, c01.b, c11.b),
            mix(c00.a, c10.a, c01.a, c11.a)};
#endif
}

} // namespace Qv
