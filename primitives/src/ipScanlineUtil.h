#pragma once
// Line filters of the 2:1 reduction that makes each proxy level from the one
// below: Lanczos2 at half scale, eight taps over source pixels 2x - 3 .. 2x + 4
// for output pixel x (IxScanlineCache lays the rows out the same way). The
// weights sum to one, so a constant line stays constant.
#include "ixScanline.h"

namespace Qv {

struct IpScanlineUtil {
    using Rgba = CoRgbaColorTyped<float>;
    static constexpr int LANCZOS2_TAPS = 8;

    // Across: dst column x from src columns 2x - 3 .. 2x + 4; columns that src
    // does not hold count as zero.
    static void lanczos2Filter(IxScanline<Rgba>& dst, IxScanline<Rgba> const& src);
    // Down: dst from eight lines over dst's columns, top first.
    static void lanczos2Filter(IxScanline<Rgba>& dst, Rgba const* const* taps);

    // The eight weights.
    static float const* getLanczos2Weights();
};

} // namespace Qv
