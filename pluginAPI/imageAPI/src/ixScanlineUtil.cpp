#include "ixScanlineUtil.h"

#include "assertions.h"

#include <algorithm>

namespace Qv {

namespace {

using Rgba = CoRgbaColorTyped<float>;

template <class T>
GeInterval<int> span(IxScanline<T> const& scanline, GeInterval<int> const* interval) {
    return interval ? scanline.getInterval().getIntersection(*interval) : scanline.getInterval();
}

template <class T, class U>
GeInterval<int> span(IxScanline<T> const& a, IxScanline<U> const& b, GeInterval<int> const* interval) {
    return span(a, interval).getIntersection(b.getInterval());
}

// The values as plain floats, so that the loops over them vectorise.
inline float* floats(Rgba* p) {
    return reinterpret_cast<float*>(p);
}
inline float const* floats(Rgba const* p) {
    return reinterpret_cast<float const*>(p);
}
inline float* floats(float* p) {
    return p;
}
inline float const* floats(float const* p) {
    return p;
}
template <class T>
constexpr int COMPONENTS = sizeof(T) / sizeof(float);

// d[i] = op(d[i], a[i]) over every float of the shared columns.
template <class T, class Op>
void combine(IxScanline<T>& dst, IxScanline<T> const& src, GeInterval<int> const* interval, Op op) {
    GeInterval<int> const s = span(dst, src, interval);
    if (s.isEmpty())
        return;
    float* d = floats(&dst[s.x1]);
    float const* a = floats(&src[s.x1]);
    int const n = s.getLength() * COMPONENTS<T>;
    for (int i = 0; i < n; ++i)
        d[i] = op(d[i], a[i]);
}

} // namespace

template <class T>
void IxScanlineUtil::set(IxScanline<T>& scanline, T const& value, GeInterval<int> const* interval) {
    GeInterval<int> const s = span(scanline, interval);
    if (!s.isEmpty())
        std::fill(&scanline[s.x1], &scanline[s.x1] + s.getLength(), value);
}

template <class T>
void IxScanlineUtil::accumulateScanline(IxScanline<T>& dst, IxScanline<T> const& src,
                                        GeInterval<int> const* interval) {
    combine(dst, src, interval, [](float d, float a) { return d + a; });
}

template <class T>
void IxScanlineUtil::scaleScanline(IxScanline<T>& dst, IxScanline<T> const& src, float factor,
                                   GeInterval<int> const* interval) {
    combine(dst, src, interval, [factor](float, float a) { return a * factor; });
}

void IxScanlineUtil::extractChannel(IxScanline<float>& dst, int index, IxScanline<Rgba> const& src,
                                    InvertType invert, GeInterval<int> const* interval) {
    QV_ASSERT(index >= 0 && index < 4);
    GeInterval<int> const s = span(dst, src, interval);
    if (s.isEmpty())
        return;
    float* d = &dst[s.x1];
    float const* a = floats(&src[s.x1]) + index;
    // v or 1 - v as one multiply-add, without a branch in the loop.
    float const offset = invert == INVERT ? 1.0f : 0.0f;
    float const sign = invert == INVERT ? -1.0f : 1.0f;
    for (int i = 0; i < s.getLength(); ++i)
        d[i] = offset + sign * a[4 * i];
}

void IxScanlineUtil::multiplyByAlpha(IxScanline<Rgba>& scanline, GeInterval<int> const* interval) {
    GeInterval<int> const s = span(scanline, interval);
    Rgba* p = s.isEmpty() ? nullptr : &scanline[s.x1];
    for (int i = 0; i < s.getLength(); ++i) {
        p[i].r *= p[i].a;
        p[i].g *= p[i].a;
        p[i].b *= p[i].a;
    }
}

void IxScanlineUtil::divideByAlpha(IxScanline<Rgba>& scanline, GeInterval<int> const* interval) {
    GeInterval<int> const s = span(scanline, interval);
    Rgba* p = s.isEmpty() ? nullptr : &scanline[s.x1];
    for (int i = 0; i < s.getLength(); ++i) {
        float const scale = p[i].a != 0.0f ? 1.0f / p[i].a : 1.0f;
        p[i].r *= scale;
        p[i].g *= scale;
        p[i].b *= scale;
    }
}

template void IxScanlineUtil::set(IxScanline<float>&, float const&, GeInterval<int> const*);
template void IxScanlineUtil::set(IxScanline<Rgba>&, Rgba const&, GeInterval<int> const*);
template void IxScanlineUtil::accumulateScanline(IxScanline<float>&, IxScanline<float> const&,
                                                 GeInterval<int> const*);
template void IxScanlineUtil::accumulateScanline(IxScanline<Rgba>&, IxScanline<Rgba> const&,
                                                 GeInterval<int> const*);
template void IxScanlineUtil::scaleScanline(IxScanline<float>&, IxScanline<float> const&, float,
                                            GeInterval<int> const*);
template void IxScanlineUtil::scaleScanline(IxScanline<Rgba>&, IxScanline<Rgba> const&, float,
                                            GeInterval<int> const*);

} // namespace Qv
