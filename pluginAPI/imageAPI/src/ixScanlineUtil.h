#pragma once
// Line kernels over scanlines. Each works on the columns that the scanlines
// involved share, narrowed to `interval` when one is given (null: all of them).
#include "ixScanline.h"

namespace Qv {

struct IxScanlineUtil {
    enum InvertType { NO_INVERT, INVERT };
    using Rgba = CoRgbaColorTyped<float>;

    template <class T>
    static void set(IxScanline<T>& scanline, T const& value, GeInterval<int> const* interval);
    // dst += src
    template <class T>
    static void accumulateScanline(IxScanline<T>& dst, IxScanline<T> const& src,
                                   GeInterval<int> const* interval);
    // dst = src * factor, every component (alpha too).
    template <class T>
    static void scaleScanline(IxScanline<T>& dst, IxScanline<T> const& src, float factor,
                              GeInterval<int> const* interval);
    // dst = component `index` (0 red .. 3 alpha) of src, or 1 minus it.
    static void extractChannel(IxScanline<float>& dst, int index, IxScanline<Rgba> const& src,
                               InvertType invert, GeInterval<int> const* interval);
    // Colour times alpha: to premultiplied.
    static void multiplyByAlpha(IxScanline<Rgba>& scanline, GeInterval<int> const* interval);
    // Colour over alpha where alpha is not zero: back from premultiplied.
    // Where it is zero the colour stays, which premultiplied pixels have at 0.
    static void divideByAlpha(IxScanline<Rgba>& scanline, GeInterval<int> const* interval);
};

} // namespace Qv
