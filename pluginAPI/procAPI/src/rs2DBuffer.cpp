#include "rs2DBuffer.h"

#include "ipRegionUtil.h"
#include "rsEx.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace Qv {

namespace {

struct Vertex {
    double x;
    double y;
};

// One edge as the half-plane it bounds, positive inside. It is evaluated
// from its endpoints in a fixed order (upper first, then left), whichever
// triangle it belongs to: two triangles sharing it get values of exactly
// opposite signs, so a centre on it goes to exactly one of them.
class Edge {
public:
    // inside: +1 when the interior lies on the positive side of p -> q.
    Edge(Vertex p, Vertex q, double inside) {
        bool const swap = q.y < p.y || (q.y == p.y && q.x < p.x);
        _p = swap ? q : p;
        _q = swap ? p : q;
        _sign = swap ? -inside : inside;
        double const dx = _sign * (-(_q.y - _p.y)); // gradient of the value along x
        double const dy = _sign * (_q.x - _p.x);    // and along y
        _kind = dx > 0 ? LEFT : dx < 0 ? RIGHT : HORIZONTAL;
        _ownsBoundary = dx > 0 || (dx == 0 && dy > 0); // left or top edge
    }

    enum Kind { LEFT, RIGHT, HORIZONTAL };
    Kind getKind() const { return _kind; }

    bool contains(double x, double y) const {
        double const value = _sign * ((_q.x - _p.x) * (y - _p.y) - (_q.y - _p.y) * (x - _p.x));
        return value > 0 || (value == 0 && _ownsBoundary);
    }
    // Where the edge's line crosses the row at y; not for a horizontal edge.
    double crossingAt(double y) const { return _p.x + (_q.x - _p.x) * (y - _p.y) / (_q.y - _p.y); }

private:
    Vertex _p{};
    Vertex _q{};
    double _sign = 1;
    Kind _kind = HORIZONTAL;
    bool _ownsBoundary = false;
};

// The first column in [lo, hi] where `test` holds, for a test that is false
// and then true along the row, with hi standing for "nowhere in the row".
// The guess from the crossing is nearly always exact; the exact test of the
// centres settles the rounding, in a step or two.
template <class Test>
int firstColumn(int lo, int hi, double guess, Test const& test) {
    double const clamped = std::clamp(guess, static_cast<double>(lo), static_cast<double>(hi));
    int x = static_cast<int>(std::ceil(clamped));
    if (x == hi || test(x)) {
        while (x > lo && test(x - 1))
            --x;
    } else {
        while (x < hi && !test(x))
            ++x;
    }
    return x;
}

} // namespace

Rs2DBuffer::Rs2DBuffer(IxWriteGuard guard) : _guard(std::move(guard)) {}

Rs2DBuffer::Rs2DBuffer(IxTile const& tile) : _guard(tile) {}

std::int64_t Rs2DBuffer::rasterizeUnclippedTriangle(GePoint2<float> a, GePoint2<float> b, GePoint2<float> c,
                                                    CoRgbaColorTyped<float> const& colour) {
    for (float const v : {a.x, a.y, b.x, b.y, c.x, c.y})
        if (!std::isfinite(v))
            throw RsEx::ExBadGeometry(
                __FILE__, __LINE__,
                fmt::format("cannot draw the triangle {}, {}, {}: a coordinate is not finite", a.dump(),
                            b.dump(), c.dump()));
    std::int64_t drawn = 0;
    ipVisitFormat(
        _guard.getPixelFormat(), "Rs2DBuffer::rasterizeUnclippedTriangle", [&](auto component, auto comps) {
            using D = decltype(component);
            constexpr int N = comps();
            Vertex const va{a.x, a.y}, vb{b.x, b.y}, vc{c.x, c.y};
            double const area2 = (vb.x - va.x) * (vc.y - va.y) - (vb.y - va.y) * (vc.x - va.x);
            GeRectangle<int> const& region = _guard.getPixelRegion();
            if (area2 == 0 || region.isEmpty())
                return;
            double const inside = area2 > 0 ? 1.0 : -1.0;
            Edge const edges[] = {Edge(va, vb, inside), Edge(vb, vc, inside), Edge(vc, va, inside)};

            // Rows whose centres may lie within the triangle's height, within the tile.
            double const top = std::min({va.y, vb.y, vc.y}) - 0.5;
            double const bottom = std::max({va.y, vb.y, vc.y}) - 0.5;
            int const y1 = static_cast<int>(
                std::floor(std::clamp(top, static_cast<double>(region.y1), static_cast<double>(region.y2))));
            int const y2 = static_cast<int>(std::ceil(
                std::clamp(bottom + 1, static_cast<double>(region.y1), static_cast<double>(region.y2))));

            IpPixel<N, D> const pixel(colour);
            for (int y = y1; y < y2; ++y) {
                double const cy = y + 0.5;
                int start = region.x1;
                int end = region.x2;
                for (Edge const& edge : edges) {
                    if (start >= end)
                        break;
                    switch (edge.getKind()) {
                    case Edge::HORIZONTAL:
                        if (!edge.contains(0.0, cy))
                            end = start;
                        break;
                    case Edge::LEFT: // inside from some column on
                        start =
                            std::max(start, firstColumn(region.x1, region.x2, edge.crossingAt(cy) - 0.5,
                                                        [&](int x) { return edge.contains(x + 0.5, cy); }));
                        break;
                    case Edge::RIGHT: // inside up to some column
                        end = std::min(end, firstColumn(region.x1, region.x2, edge.crossingAt(cy) - 0.5,
                                                        [&](int x) { return !edge.contains(x + 0.5, cy); }));
                        break;
                    }
                }
                if (start < end) {
                    ipFillRun(ipPixelsAt<D, N>(_guard, start, y), pixel, end - start);
                    drawn += end - start;
                }
            }
        });
    return drawn;
}

} // namespace Qv
