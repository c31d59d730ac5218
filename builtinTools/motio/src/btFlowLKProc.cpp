#include "btFlowLKProc.h"

#include "assertions.h"
#include "geRectangleUtil.h"
#include "ipSet.h"
#include "ixRollingScanlineBuffer.h"
#include "ixWriteGuard.h"
#include "pxRequestMgr.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace Qv {

namespace {

using Rgba = CoRgbaColorTyped<float>;

constexpr int SIZE = BtFlowLKProc::WINDOW_SIZE;
constexpr int BORDER = BtFlowLKProc::BORDER;
// Below this, in absolute value, a determinant or a norm counts as zero.
constexpr float EPSILON = 1e-5f;
// gx gx, gx gy, gy gy, gx (-t), gy (-t): the five sums of the normal equations.
constexpr int PRODUCTS = 5;

// Four windows' values, one per lane, so that the solve runs on vectors.
using Lanes = float __attribute__((vector_size(16)));
using LaneMask = int __attribute__((vector_size(16)));
constexpr std::size_t LANES = 4;

inline Lanes lanes(float const* p) {
    Lanes v;
    std::memcpy(&v, p, sizeof v);
    return v;
}
inline Lanes lanesOf(float f) {
    return Lanes{f, f, f, f};
}

// What solveWindows needs of its value type, for one float and four lanes.
inline float absolute(float f) {
    return std::fabs(f);
}
inline Lanes absolute(Lanes v) {
    LaneMask bits;
    std::memcpy(&bits, &v, sizeof bits);
    bits &= 0x7fffffff;
    std::memcpy(&v, &bits, sizeof v);
    return v;
}
inline float select(bool condition, float a, float b) {
    return condition ? a : b;
}
inline Lanes select(LaneMask condition, Lanes a, Lanes b) {
    return condition ? a : b;
}
inline float splat(float f, float) {
    return f;
}
inline Lanes splat(float f, Lanes) {
    return lanesOf(f);
}

// The increment of a window from its totals, clamped to one pixel: A = a,
// B = b, C = c, D = d, E = e. Both candidate solutions are computed and one
// selected, so that there is no branch; the one not taken may hold an
// infinity, never used. The clamp is max then min as std::max(-1, u) and
// std::min(1, ...) write them (a NaN ends at -1).
template <class T>
void solveWindows(T a, T b, T c, T d, T e, T& uOut, T& vOut) {
    T const det = a * c - b * b;
    T const s = splat(1.0f, a) / det;
    T const u1 = (c * d - b * e) * s;
    T const v1 = (a * e - b * d) * s;
    // Normal flow: the least vector meeting the one summed equation p u + q v = d + e.
    T const p = a + b;
    T const q = b + c;
    T const norm = p * p + q * q;
    T const s2 = (d + e) / norm;
    T const epsilon = splat(EPSILON, a);
    auto const regular = absolute(det) > epsilon;
    auto const normal = absolute(norm) > epsilon;
    T const zero = splat(0.0f, a);
    T const u = select(regular, u1, select(normal, p * s2, zero));
    T const v = select(regular, v1, select(normal, q * s2, zero));
    T const low = splat(-1.0f, a);
    T const high = splat(1.0f, a);
    T const uLow = select(low < u, u, low);
    T const vLow = select(low < v, v, low);
    uOut = select(uLow < high, uLow, high);
    vOut = select(vLow < high, vLow, high);
}

// Row-wide work space, made once per tile so that the row loop allocates
// nothing. Each source line's five products are made once, as the line
// enters the window, into a ring of SIZE lines (by row modulo SIZE); a row's
// window column sums and running totals are whole lines too, so that every
// pass but the running totals is a plain loop over the columns.
class Rows {
public:
    explicit Rows(int sourceWidth, int width)
        : _sourceWidth(static_cast<std::size_t>(sourceWidth)), _width(static_cast<std::size_t>(width)),
          _products(_sourceWidth * PRODUCTS * SIZE), _columns(_sourceWidth * PRODUCTS),
          _totals(_width * PRODUCTS) {}

    // The products of a source line of row y.
    void enter(int y, Rgba const* gradient, float const* derivative) {
        float* const p = product(slot(y), 0);
        std::size_t const n = _sourceWidth;
        for (std::size_t x = 0; x < n; ++x) {
            float const gx = gradient[x].r;
            float const gy = gradient[x].g;
            float const et = 0.0f - derivative[x];
            p[x] = gx * gx;
            p[n + x] = gx * gy;
            p[2 * n + x] = gy * gy;
            p[3 * n + x] = gx * et;
            p[4 * n + x] = gy * et;
        }
    }

    // The window column sums of the rows centred on y, each summed from
    // zero down the window's lines.
    void sumColumns(int y) {
        std::size_t const n = _sourceWidth;
        for (int k = 0; k < PRODUCTS; ++k) {
            float const* l0 = product(slot(y - 2), k);
            float const* l1 = product(slot(y - 1), k);
            float const* l2 = product(slot(y), k);
            float const* l3 = product(slot(y + 1), k);
            float const* l4 = product(slot(y + 2), k);
            float* const s = column(k);
            for (std::size_t x = 0; x < n; ++x)
                s[x] = ((((0.0f + l0[x]) + l1[x]) + l2[x]) + l3[x]) + l4[x];
        }
    }

    // The window totals of each pixel of the row, kept running along it: the
    // column leaving the window is taken out before the one entering is
    // added, the first window starting from the sum of its first SIZE - 1
    // columns.
    void runTotals() {
        float const* const xx = column(0);
        float const* const xy = column(1);
        float const* const yy = column(2);
        float const* const xt = column(3);
        float const* const yt = column(4);
        float a = 0.0f, b = 0.0f, c = 0.0f, d = 0.0f, e = 0.0f;
        for (int i = 0; i < SIZE - 1; ++i) {
            a += xx[i];
            b += xy[i];
            c += yy[i];
            d += xt[i];
            e += yt[i];
        }
        float* const ta = total(0);
        float* const tb = total(1);
        float* const tc = total(2);
        float* const td = total(3);
        float* const te = total(4);
        // The first window has no column to lose: its ring cell is still zero.
        a = (a - 0.0f) + xx[SIZE - 1];
        b = (b - 0.0f) + xy[SIZE - 1];
        c = (c - 0.0f) + yy[SIZE - 1];
        d = (d - 0.0f) + xt[SIZE - 1];
        e = (e - 0.0f) + yt[SIZE - 1];
        ta[0] = a, tb[0] = b, tc[0] = c, td[0] = d, te[0] = e;
        std::size_t const n = _width;
        for (std::size_t x = 1; x < n; ++x) {
            std::size_t const leaving = x - 1;
            std::size_t const entering = x + SIZE - 1;
            a = (a - xx[leaving]) + xx[entering];
            b = (b - xy[leaving]) + xy[entering];
            c = (c - yy[leaving]) + yy[entering];
            d = (d - xt[leaving]) + xt[entering];
            e = (e - yt[leaving]) + yt[entering];
            ta[x] = a, tb[x] = b, tc[x] = c, td[x] = d, te[x] = e;
        }
    }

    // The increment of each window of the row, clamped to one pixel, four
    // windows at a time and the rest one by one, by the same arithmetic.
    void solve(Rgba* out) const {
        float const* const ta = total(0);
        float const* const tb = total(1);
        float const* const tc = total(2);
        float const* const td = total(3);
        float const* const te = total(4);
        std::size_t const n = _width;
        std::size_t x = 0;
        for (; x + LANES <= n; x += LANES) {
            Lanes u, v;
            solveWindows(lanes(ta + x), lanes(tb + x), lanes(tc + x), lanes(td + x), lanes(te + x), u, v);
            for (std::size_t i = 0; i < LANES; ++i)
                out[x + i] = {u[i], v[i], 0.0f, 0.0f};
        }
        for (; x < n; ++x) {
            float u, v;
            solveWindows(ta[x], tb[x], tc[x], td[x], te[x], u, v);
            out[x] = {u, v, 0.0f, 0.0f};
        }
    }

private:
    static std::size_t slot(int y) { return static_cast<std::size_t>(((y % SIZE) + SIZE) % SIZE); }
    float* product(std::size_t line, int k) {
        return _products.data() + (line * PRODUCTS + static_cast<std::size_t>(k)) * _sourceWidth;
    }
    float* column(int k) { return _columns.data() + static_cast<std::size_t>(k) * _sourceWidth; }
    float* total(int k) { return _totals.data() + static_cast<std::size_t>(k) * _width; }
    float const* total(int k) const { return _totals.data() + static_cast<std::size_t>(k) * _width; }

    std::size_t _sourceWidth;
    std::size_t _width;
    std::vector<float> _products;
    std::vector<float> _columns;
    std::vector<float> _totals;
};

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
    Rows rows(srcRgn.getWidth(), compRgn.getWidth());
    bool first = true;
    for (int y = compRgn.y1; y < compRgn.y2; ++y) {
        requests.checkCancellation();
        Rgba const* const* g = gradientLines.getNext();
        float const* const* t = derivativeLines.getNext();
        // Only the line entering the window is new, after the first window.
        for (int i = first ? 0 : SIZE - 1; i < SIZE; ++i)
            rows.enter(y - BORDER + i, g[i], t[i]);
        first = false;
        rows.sumColumns(y);
        rows.runTotals();
        rows.solve(line + left);
        work.writeTo(out, y);
    }
    for (int y = compRgn.y2; y < dstRgn.y2; ++y) {
        requests.checkCancellation();
        margin.writeTo(out, y);
    }
}

} // namespace Qv
