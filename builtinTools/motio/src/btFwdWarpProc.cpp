#include "btFwdWarpProc.h"

#include "assertions.h"
#include "ixScanline.h"
#include "pxRequestMgr.h"

#include <type_traits>

namespace Qv {

namespace {

using Rgba = CoRgbaColorTyped<float>;

// The largest integer not above x, exact for negative values too, without a
// call or a branch: truncation rounds negative values up, so one is taken
// back where it did.
inline int floorToInt(float x) {
    int const t = static_cast<int>(x);
    return t - static_cast<int>(static_cast<float>(t) > x);
}

// max and min that give the bound when x is NaN (the comparison is false),
// as the processor's own max and min do with the bound second.
inline float atLeast(float x, float bound) {
    return x > bound ? x : bound;
}
inline float atMost(float x, float bound) {
    return x < bound ? x : bound;
}

template <int N>
inline void addWeighted(float* dst, std::conditional_t<N == 4, Rgba, float> const& value, float weight) {
    if constexpr (N == 4) {
        dst[0] += value.r * weight;
        dst[1] += value.g * weight;
        dst[2] += value.b * weight;
        dst[3] += value.a * weight;
    } else {
        dst[0] += value * weight;
    }
}

} // namespace

BtFwdWarpProc::BtFwdWarpProc(IxTile const& acc, IxTile const& cov, float warpCoef)
    : _acc(acc), _cov(cov), _dstRgn(acc.getPixelRegion()), _boundX1(static_cast<float>(_dstRgn.x1)),
      _boundY1(static_cast<float>(_dstRgn.y1)), _boundX2(static_cast<float>(_dstRgn.x2 - 2)),
      _boundY2(static_cast<float>(_dstRgn.y2 - 2)), _accStride(_acc.getRowBytes() / sizeof(float)),
      _covStride(_cov.getRowBytes() / sizeof(float)), _warpCoef(warpCoef) {
    IxPixelFormat const& accPFmt = acc.getPixelFormat();
    IxPixelFormat const& covPFmt = cov.getPixelFormat();
    QV_ASSERT_MSG(accPFmt.getDepth() == IxPixelFormat::FLOAT32,
                  "accPFmt.getDepth() == IxPixelFormat::FLOAT32");
    QV_ASSERT_MSG(covPFmt.getDepth() == IxPixelFormat::FLOAT32,
                  "covPFmt.getDepth() == IxPixelFormat::FLOAT32");
    QV_ASSERT_MSG(
        (accPFmt.getComps() == IxPixelFormat::ALPHA) || (accPFmt.getComps() == IxPixelFormat::RGBA),
        "( accPFmt.getComps() == IxPixelFormat::ALPHA ) || ( accPFmt.getComps() == IxPixelFormat::RGBA )");
    QV_ASSERT_MSG(covPFmt.getComps() == IxPixelFormat::ALPHA, "covPFmt.getComps() == IxPixelFormat::ALPHA");
    QV_ASSERT(cov.getPixelRegion() == _dstRgn);
    _rgba = accPFmt.getComps() == IxPixelFormat::RGBA;
}

void BtFwdWarpProc::splat(IxReadGuard const& image, IxReadGuard const& vectors,
                          GeRectangle<int> const& srcRgn) {
    QV_ASSERT_MSG(srcRgn.x1 >= _dstRgn.x1 + 2, "srcRgn.x1() >= _dstRgn.x1() + 2");
    QV_ASSERT_MSG(srcRgn.y1 >= _dstRgn.y1 + 2, "srcRgn.y1() >= _dstRgn.y1() + 2");
    QV_ASSERT_MSG(srcRgn.x2 <= _dstRgn.x2 + 2, "srcRgn.x2() <= _dstRgn.x2() + 2");
    QV_ASSERT_MSG(srcRgn.y2 <= _dstRgn.y2 + 2, "srcRgn.y2() <= _dstRgn.y2() + 2");
    if (srcRgn.isEmpty())
        return;
    // The clamp bounds hold a pixel and its right and lower neighbours only
    // in a region of two pixels or more each way.
    QV_ASSERT(_dstRgn.getWidth() >= 2 && _dstRgn.getHeight() >= 2);
    if (_rgba)
        splatRows<4>(image, vectors, srcRgn);
    else
        splatRows<1>(image, vectors, srcRgn);
}

template <int N>
void BtFwdWarpProc::splatRows(IxReadGuard const& image, IxReadGuard const& vectors,
                              GeRectangle<int> const& srcRgn) {
    using Value = std::conditional_t<N == 4, Rgba, float>;
    PxRequestMgr const& mgr = PxRequestMgr::getInstance();
    GeInterval<int> const columns = srcRgn.getXInterval();
    IxScanline<Value> values(columns);
    // A pixel without a vector stays where it is.
    IxScanline<Rgba> motion(columns, IxPaddingPolicy<Rgba>::constant({0.0f, 0.0f, 0.0f, 1.0f}));
    float* const accOrigin = _acc.getLineAs<float>(_dstRgn.y1);
    float* const covOrigin = _cov.getLineAs<float>(_dstRgn.y1);
    std::ptrdiff_t const accStride = static_cast<std::ptrdiff_t>(_accStride);
    std::ptrdiff_t const covStride = static_cast<std::ptrdiff_t>(_covStride);
    int const width = columns.getLength();
    // Locals, since the stores into the accumulators could alias the members.
    float const coef = _warpCoef;
    float const boundX1 = _boundX1, boundY1 = _boundY1, boundX2 = _boundX2, boundY2 = _boundY2;
    int const dstX1 = _dstRgn.x1, dstY1 = _dstRgn.y1;
    for (int y = srcRgn.y1; y < srcRgn.y2; ++y) {
        mgr.checkCancellation();
        values.readFrom(image, y);
        motion.readFrom(vectors, y);
        Value const* value = values.getData();
        Rgba const* v = motion.getData();
        float const rowY = static_cast<float>(y);
        for (int i = 0; i < width; ++i) {
            float X = static_cast<float>(columns.x1 + i) + v[i].r * coef;
            float Y = rowY + v[i].g * coef;
            X = atMost(atLeast(X, boundX1), boundX2);
            Y = atMost(atLeast(Y, boundY1), boundY2);
            int const ix = floorToInt(X);
            int const iy = floorToInt(Y);
            float const fx = X - static_cast<float>(ix);
            float const fy = Y - static_cast<float>(iy);
            float const fxfy = fx * fy;
            float const w00 = 1.0f - fx - fy + fxfy;
            float const w01 = fy - fxfy;
            float const w10 = fx - fxfy;
            float const w11 = fxfy;
            std::ptrdiff_t const dx = ix - dstX1;
            std::ptrdiff_t const dy = iy - dstY1;
            float* const a = accOrigin + dy * accStride + dx * N;
            float* const c = covOrigin + dy * covStride + dx;
            addWeighted<N>(a, value[i], w00);
            addWeighted<N>(a + accStride, value[i], w01);
            addWeighted<N>(a + N, value[i], w10);
            addWeighted<N>(a + accStride + N, value[i], w11);
            c[0] += w00;
            c[covStride] += w01;
            c[1] += w10;
            c[covStride + 1] += w11;
        }
    }
}

} // namespace Qv
