#include "btUpscaleProc.h"

#include "assertions.h"
#include "floatUtil.h"
#include "ixScanlineUtil.h"
#include "pxRequestMgr.h"

namespace Qv {

namespace {

using Rgba = CoRgbaColorTyped<float>;

// Deliberately not (0.75, 0.25): the closer pixel weighs a little more.
constexpr float NEAR_WEIGHT = 0.8f;
constexpr float FAR_WEIGHT = 0.2f;

inline float* floats(Rgba* p) {
    return reinterpret_cast<float*>(p);
}
inline float const* floats(Rgba const* p) {
    return reinterpret_cast<float const*>(p);
}

// line = near + FAR_WEIGHT * far, over n floats.
void addFar(float* line, float const* near, float const* far, int n) {
    for (int i = 0; i < n; ++i)
        line[i] = near[i] + FAR_WEIGHT * far[i];
}

// The two destination pixels of each source column x of `v` (indices 1 ..
// columns, with a neighbour on each side): 2x weighs in x - 1, 2x + 1 weighs
// in x + 1.
void expandRow(Rgba const* v, Rgba* out, int columns) {
    float const* in = floats(v);
    float* o = floats(out);
    for (int i = 1; i <= columns; ++i, o += 8) {
        float const* c = in + 4 * i;
        for (int k = 0; k < 4; ++k) {
            float const near = NEAR_WEIGHT * c[k];
            o[k] = near + FAR_WEIGHT * c[k - 4];
            o[k + 4] = near + FAR_WEIGHT * c[k + 4];
        }
    }
}

} // namespace

void ScaleScanline::operator()(IxScanline<Rgba>& line, int) const {
    IxScanlineUtil::scaleScanline(line, line, _scale, nullptr);
}

BtUpscaleProc::BtUpscaleProc(IxWriteGuard const& out, GeRectangle<int> const& srcRgn, float scale)
    : _out(out), _scale(scale) {
    GeRectangle<int> const& dstRgn = _out.getPixelRegion();
    QV_ASSERT_MSG(FloatUtil::iceil(dstRgn.getWidth() / 2.0f) <= (srcRgn.getWidth() - 2) &&
                      FloatUtil::iceil(dstRgn.getHeight() / 2.0f) <= (srcRgn.getHeight() - 2),
                  "FloatUtil::iceil( dstRgn.getWidth() /2.0f ) <= ( srcRgn.getWidth() -2 ) && "
                  "FloatUtil::iceil( dstRgn.getHeight()/2.0f ) <= ( srcRgn.getHeight()-2 )");
}

void BtUpscaleProc::process(std::vector<IxReadGuard> const& source) {
    GeRectangle<int> const& dst = _out.getPixelRegion();
    if (dst.isEmpty())
        return;
    // The source pixels whose pairs cover the destination (shifts floor, for
    // negative positions too), read with one neighbour on each side.
    int const sx1 = dst.x1 >> 1;
    int const sx2 = ((dst.x2 - 1) >> 1) + 1;
    int const sy1 = dst.y1 >> 1;
    int const sy2 = ((dst.y2 - 1) >> 1) + 1;
    int const columns = sx2 - sx1;
    int const width = columns + 2;

    IxRollingScanlineBuffer<Rgba>::Options options;
    if (_scale != 1.0f)
        options.onEntry = ScaleScanline(_scale);
    IxRollingScanlineBuffer<Rgba> window(source, {sx1 - 1, sx2 + 1, sy1, sy2}, 3, {}, std::move(options));

    // Made once per tile: the centre line times the near weight, the two
    // vertically filtered lines, and whole pairs of destination pixels,
    // of which writeTo keeps the part inside the tile.
    std::vector<Rgba> nearLine(static_cast<std::size_t>(width));
    std::vector<Rgba> upper(static_cast<std::size_t>(width));
    std::vector<Rgba> lower(static_cast<std::size_t>(width));
    IxScanline<Rgba> row({2 * sx1, 2 * sx2});
    int const n = 4 * width;

    while (window.hasNext()) {
        PxRequestMgr::getInstance().checkCancellation();
        Rgba* const* lines = window.getNext();
        int const y = window.getCentreRow();
        bool const hasUpper = 2 * y >= dst.y1;
        bool const hasLower = 2 * y + 1 < dst.y2;
        float const* centre = floats(lines[1]);
        float* near = floats(nearLine.data());
        for (int i = 0; i < n; ++i)
            near[i] = NEAR_WEIGHT * centre[i];
        if (hasUpper) {
            addFar(floats(upper.data()), near, floats(lines[0]), n);
            expandRow(upper.data(), row.getData(), columns);
            row.writeTo(_out, 2 * y);
        }
        if (hasLower) {
            addFar(floats(lower.data()), near, floats(lines[2]), n);
            expandRow(lower.data(), row.getData(), columns);
            row.writeTo(_out, 2 * y + 1);
        }
    }
}

} // namespace Qv
