#pragma once
// Doubles an image in each direction: destination pixel (2x + a, 2y + b)
// is 0.64 S(x, y) + 0.16 S(x', y) + 0.16 S(x, y') + 0.04 S(x', y'), with x'
// the source column on the side of a (x - 1 for a = 0, x + 1 for a = 1) and
// y' likewise; that is the weights (0.8, 0.2) in each direction, every
// component alike. The source values can be multiplied by a scale on the
// way in (vectors doubled as they go one proxy level down).
#include "ixRollingScanlineBuffer.h"
#include "ixScanline.h"

namespace Qv {

// Multiplies each source line by the scale as it enters the rolling buffer.
class ScaleScanline {
public:
    explicit ScaleScanline(float scale) : _scale(scale) {}
    void operator()(IxScanline<CoRgbaColorTyped<float>>& line, int y) const;

private:
    float _scale;
};

class BtUpscaleProc {
public:
    using Rgba = CoRgbaColorTyped<float>;

    // Will write `out`'s whole region. Asserts that the source region, from
    // which the source tiles were fetched, reaches at least one pixel past
    // half the destination's size on each side.
    BtUpscaleProc(IxWriteGuard const& out, GeRectangle<int> const& srcRgn, float scale);

    // The source tiles; what they do not cover reads as their fill colour.
    void process(std::vector<IxReadGuard> const& source);

private:
    IxWriteGuard _out;
    float _scale;
};

} // namespace Qv
