#include "ipArithmetic.h"

#include "ipConvertRow.h"
#include "ipRegionUtil.h"
#include "ixScanline.h"

#include <functional>
#include <vector>

namespace Qv {

namespace {

using Rgba = CoRgbaColorTyped<float>;

bool coversRow(IxReadGuard const& guard, GeRectangle<int> const& rect, int y) {
    GeRectangle<int> const& region = guard.getPixelRegion();
    return region.y1 <= y && y < region.y2 && region.x1 <= rect.x1 && rect.x2 <= region.x2;
}

template <class Op>
void combine(IxWriteGuard const& dst, IxReadGuard const& a, IxReadGuard const& b,
             GeRectangle<int> const* region, Op op, char const* operation) {
    GeRectangle<int> const rect = ipClipRegion(dst, region);
    if (rect.isEmpty())
        return;
    // COMPLEX anywhere is refused before a pixel is written.
    ipVisitFormat(a.getPixelFormat(), operation, [](auto, auto) {});
    ipVisitFormat(b.getPixelFormat(), operation, [](auto, auto) {});
    bool const sameFormat =
        a.getPixelFormat() == dst.getPixelFormat() && b.getPixelFormat() == dst.getPixelFormat();
    ipVisitFormat(dst.getPixelFormat(), operation, [&](auto component, auto comps) {
        using D = decltype(component);
        constexpr int N = comps();
        int const n = rect.getWidth() * N;
        // Rows that both operands hold in the destination's format go straight
        // through; the others through RGBA scanlines that pad with fill colours.
        std::vector<float> floatA;
        std::vector<float> floatB;
        if constexpr (!std::is_same_v<D, float>) {
            floatA.resize(static_cast<std::size_t>(n));
            floatB.resize(static_cast<std::size_t>(n));
        }
        IxScanline<Rgba> lineA(rect.getXInterval());
        IxScanline<Rgba> lineB(rect.getXInterval());
        for (int y = rect.y1; y < rect.y2; ++y) {
            D* out = ipPixelsAt<D, N>(dst, rect.x1, y);
            if (sameFormat && coversRow(a, rect, y) && coversRow(b, rect, y)) {
                D const* pa = ipPixelsAt<D, N>(a, rect.x1, y);
                D const* pb = ipPixelsAt<D, N>(b, rect.x1, y);
                if constexpr (std::is_same_v<D, float>) {
                    for (int i = 0; i < n; ++i)
                        out[i] = op(pa[i], pb[i]);
                } else {
                    ipConvertRow<1, D, 1, float>(pa, floatA.data(), n);
                    ipConvertRow<1, D, 1, float>(pb, floatB.data(), n);
                    for (int i = 0; i < n; ++i)
                        floatA[static_cast<std::size_t>(i)] =
                            op(floatA[static_cast<std::size_t>(i)], floatB[static_cast<std::size_t>(i)]);
                    ipConvertRow<1, float, 1, D>(floatA.data(), out, n);
                }
                continue;
            }
            lineA.readFrom(a, y);
            lineB.readFrom(b, y);
            float* fa = reinterpret_cast<float*>(lineA.getData());
            float const* fb = reinterpret_cast<float const*>(lineB.getData());
            for (int i = 0; i < 4 * rect.getWidth(); ++i)
                fa[i] = op(fa[i], fb[i]);
            lineA.writeTo(dst, y);
        }
    });
}

} // namespace

void ipAdd(IxWriteGuard const& dst, IxReadGuard const& a, IxReadGuard const& b,
           GeRectangle<int> const* region) {
    combine(dst, a, b, region, std::plus<float>(), "ipAdd");
}

void ipSubtract(IxWriteGuard const& dst, IxReadGuard const& a, IxReadGuard const& b,
                GeRectangle<int> const* region) {
    combine(dst, a, b, region, std::minus<float>(), "ipSubtract");
}

} // namespace Qv
