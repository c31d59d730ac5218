#include "btFlowLKProc.h"

#include "assertions.h"
#include "geRectangleUtil.h"
#include "ipSet.h"
#include "ixRollingScanlineBuffer.h"
#include "ixWriteGuard.h"
#include "pxRequestMgr.h"

#include <algorithm>
#include <cmath>

namespace Qv {

namespace {

using Rgba = CoRgbaColorTyped<float>;

constexpr int SIZE = BtFlowLKProc::WINDOW_SIZE;
constexpr int BORDER = BtFlowLKProc::BORDER;
// Below this, in absolute value, a determinant or a norm counts as zero.
constexpr float EPSILON = 1e-5f;

// The five products of one window column, each kept in a ring of SIZE
// columns, and their totals over the window.
struct WindowSums {
    float xx[SIZE] = {};
    float xy[SIZE] = {};
    float yy[SIZE] = {};
    float xt[SIZE] = {};
    float yt[SIZE] = {};
    float a = 0.0f, b = 0.0f, c = 0.0f, d = 0.0f, e = 0.0f;

    // Sums source column `column` of the window's lines into ring cell i and
    // adds the cell to the totals. The cell must be zero.
    void enter(int i, Rgba const* const* gradient, float const* const* derivative, int column) {
        for (int line = 0; line < SIZE; ++line) {
            float const gx = gradient[line][column].r;
            float const gy = gradient[line][column].g;
            float const et = 0.0f - derivative[line][column];
            xx[i] += gx * gx;
            xy[i] += gx * gy;
            yy[i] += gy * gy;
            xt[i] += gx * et;
            yt[i] += gy * et;
        }
        a += xx[i];
        b += xy[i];
        c += yy[i];
        d += xt[i];
        e += yt[i];
    }

    // Takes ring cell i out of the totals and clears it.
    void leave(int i) {
        a -= xx[i];
        b -= xy[i];
        c -= yy[i];
        d -= xt[i];
        e -= yt[i];
        xx[i] = xy[i] = yy[i] = xt[i] = yt[i] = 0.0f;
    }
};

// The increment of one window, clamped to one pixel. Both candidate solutions
// are computed and one selected, so that the row loop does not branch; the
// one not taken may hold an infinity, never used.
Rgba solve(float a, float b, float c, float d, float e) {
    float const det = a * c - b * b;
    float const s = 1.0f / det;
    float const u1 = (c * d - b * e) * s;
    float const v1 = (a * e - b * d) * s;
    // Normal flow: the least vector meeting the one summed equation p u + q v = d + e.
    float const p = a + b;
    float const q = b + c;
    float const n = p * p + q * q;
    float const s2 = (d + e) / n;
    bool const regular = std::fabs(det) > EPSILON;
    bool const normal = std::fabs(n) > EPSILON;
    float const u = regular ? u1 : (normal ? p * s2 : 0.0f);
    float const v = regular ? v1 : (normal ? q * s2 : 0.0f);
    return {std::min(1.0f, std::max(-1.0f, u)), std::min(1.0f, std::max(-1.0f, v)), 0.0f, 0.0f};
}

} // namespace

void BtFlowLKProc::process(IxTile const& output, std::vector<IxReadGuard> const& gradient,
                           std::vector<IxReadGuard> const& derivative, GeRectangle<int> const& srcRgn) {
    GeRectangle<int> const dstRgn = output.getPixelRegion();
    QV_ASSERT_MSG(srcRgn.contains(dstRgn), "srcRgn.contains( dstRgn )");
    IxWriteGuard const out(output);
    if (srcRgn.getWidth() < SIZE || srcRgn.getHeight() < SIZE) {
        ipSet(out, Rgba{0.0f, 0.0f, 0.0f, 0.0f});
        return;
    }
    GeRectangle<int> const compRgn = GeRectangleUtil::addBorder(srcRgn, -BORDER);
    QV_ASSERT_MSG(dstRgn.contains(compRgn), "dstRgn.contains( compRgn )");
    if (dstRgn.isEmpty())
        return;

    // The windows of the rows of compRgn: lines y - 2 .. y + 2 over srcRgn's columns.
    GeRectangle<int> const windows{srcRgn.x1, srcRgn.x2, compRgn.y1, compRgn.y2};
    IxRollingScanlineBuffer<Rgba> gradientLines(gradient, windows, SIZE);
    IxRollingScanlineBuffer<float> derivativeLines(derivative, windows, SIZE);
    IxScanline<Rgba> work(dstRgn.getXInterval());
    IxScanline<Rgba> margin(dstRgn.getXInterval());
    Rgba const band{0.0f, 0.0f, 0.0f, 1.0f};
    std::fill(margin.getData(), margin.getData() + margin.getLength(), band);
    PxRequestMgr& requests = PxRequestMgr::getInstance();

    for (int y = dstRgn.y1; y < compRgn.y1; ++y) {
        requests.checkCancellation();
        margin.writeTo(out, y);
    }
    Rgba* const line = work.getData();
    int const left = compRgn.x1 - dstRgn.x1;
    int const right = compRgn.x2 - dstRgn.x1;
    int const width = dstRgn.getWidth();
    std::fill(line, line + left, band);
    std::fill(line + right, line + width, band);
    for (int y = compRgn.y1; y < compRgn.y2; ++y) {
        requests.checkCancellation();
        Rgba const* const* g = gradientLines.getNext();
        float const* const* t = derivativeLines.getNext();
        WindowSums sums;
        for (int i = 0; i < SIZE - 1; ++i)
            sums.enter(i, g, t, i);
        // The window of compRgn's first pixel ends at source column 4.
        int i = SIZE - 1;
        int column = SIZE - 1;
        for (int x = left; x < right; ++x, ++column) {
            sums.leave(i);
            sums.enter(i, g, t, column);
            line[x] = solve(sums.a, sums.b, sums.c, sums.d, sums.e);
            i = i == SIZE - 1 ? 0 : i + 1;
        }
        work.writeTo(out, y);
    }
    for (int y = compRgn.y2; y < dstRgn.y2; ++y) {
        requests.checkCancellation();
        margin.writeTo(out, y);
    }
}

} // namespace Qv
