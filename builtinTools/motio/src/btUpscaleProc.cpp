#include "btUpscaleProc.h"

#include "assertions.h"
#include "floatUtil.h"
#include "ixScanlineUtil.h"
#include "pxRequestMgr.h"

#include <cstring>
#include <vector>

namespace Qv {

namespace {

using Rgba = CoRgbaColorTyped<float>;

// Deliberately not (0.75, 0.25): the closer pixel weighs a little more.
constexpr float NEAR_WEIGHT = 0.8f;
constexpr float FAR_WEIGHT = 0.2f;

// One pixel's four components, so that a pixel is one vector operation.
using Pixel = float __attribute__((vector_size(16)));
static_assert(sizeof(Pixel) == sizeof(Rgba));

inline Pixel load(Rgba const* p) {
    Pixel v;
    std::memcpy(&v, static_cast<void const*>(p), sizeof v);
    return v;
}
inline void store(Rgba* p, Pixel v) {
    std::memcpy(static_cast<void*>(p), &v, sizeof v);
}

// A source line times each weight, made once as the line enters the window:
// it is the centre of one window and the far neighbour of two.
struct WeightedLine {
    std::vector<Rgba> nearPart;
    std::vector<Rgba> farPart;

    explicit WeightedLine(int width)
        : nearPart(static_cast<std::size_t>(width)), farPart(static_cast<std::size_t>(width)) {}

    void set(Rgba const* line) {
        Rgba* n = nearPart.data();
        Rgba* f = farPart.data();
        for (std::size_t i = 0; i < nearPart.size(); ++i) {
            Pixel const v = load(line + i);
            store(n + i, NEAR_WEIGHT * v);
            store(f + i, FAR_WEIGHT * v);
        }
    }
};

// One destination row: the vertical pass (the centre line's near part plus
// the other line's far part) as each source column is reached, then the
// pixels 2x and 2x + 1 of source columns x in [from, to) to out[2 (x - from)]
// on: 2x weighs in x - 1, 2x + 1 weighs in x + 1. Column 0 of the lines is
// the one left of the first.
void expandPairs(WeightedLine const& centreLine, WeightedLine const& otherLine, Rgba* out, int from, int to) {
    Rgba const* const nearPart = centreLine.nearPart.data();
    Rgba const* const farPart = otherLine.farPart.data();
    auto vertical = [&](int x) { return load(nearPart + x) + load(farPart + x); };
    // Each column's far part serves its right neighbour, then its left one.
    Pixel farLeft = FAR_WEIGHT * vertical(from - 1);
    Pixel centre = vertical(from);
    Pixel farCentre = FAR_WEIGHT * centre;
    for (int x = from; x < to; ++x, out += 2) {
        Pixel const right = vertical(x + 1);
        Pixel const farRight = FAR_WEIGHT * right;
        Pixel const nearCentre = NEAR_WEIGHT * centre;
        store(out, nearCentre + farLeft);
        store(out + 1, nearCentre + farRight);
        farLeft = farCentre;
        farCentre = farRight;
        centre = right;
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

    // A float RGBA tile takes the pairs straight into its rows; another
    // format gets them through a scanline. An odd first or last destination
    // column is half a pair, made apart.
    IxPixelFormat const& format = _out.getPixelFormat();
    bool const direct =
        format.getDepth() == IxPixelFormat::FLOAT32 && format.getComps() == IxPixelFormat::RGBA;
    bool const oddStart = (dst.x1 & 1) != 0;
    bool const oddEnd = (dst.x2 & 1) != 0;
    int const pairsFrom = direct && oddStart ? 1 : 0;
    int const pairsTo = direct && oddEnd ? columns - 1 : columns;

    // Made once per tile: the weighted lines of the window (by row modulo 3)
    // and a scanline for the indirect formats.
    std::vector<WeightedLine> weighted(3, WeightedLine(width));
    IxScanline<Rgba> row(direct ? GeInterval<int>{} : GeInterval<int>{2 * sx1, 2 * sx2});
    auto slot = [](int y) { return static_cast<std::size_t>(((y % 3) + 3) % 3); };

    auto emit = [&](int y, WeightedLine const& centre, WeightedLine const& other) {
        if (!direct) {
            expandPairs(centre, other, row.getData(), 1, columns + 1);
            row.writeTo(_out, y);
            return;
        }
        // Pair j lands on destination column 2 (sx1 + j).
        Rgba* const line = _out.getLineAs<Rgba>(y) - dst.x1 + 2 * sx1;
        expandPairs(centre, other, line + 2 * pairsFrom, 1 + pairsFrom, 1 + pairsTo);
        Rgba edge[2];
        if (oddStart) {
            expandPairs(centre, other, edge, 1, 2);
            line[1] = edge[1];
        }
        if (oddEnd) {
            expandPairs(centre, other, edge, columns, columns + 1);
            line[2 * (columns - 1)] = edge[0];
        }
    };

    bool first = true;
    while (window.hasNext()) {
        PxRequestMgr::getInstance().checkCancellation();
        Rgba* const* lines = window.getNext();
        int const y = window.getCentreRow();
        // Only the line entering the window is new, after the first window.
        for (int i = first ? 0 : 2; i < 3; ++i)
            weighted[slot(y - 1 + i)].set(lines[i]);
        first = false;
        WeightedLine const& centre = weighted[slot(y)];
        if (2 * y >= dst.y1)
            emit(2 * y, centre, weighted[slot(y - 1)]);
        if (2 * y + 1 < dst.y2)
            emit(2 * y + 1, centre, weighted[slot(y + 1)]);
    }
}

} // namespace Qv
