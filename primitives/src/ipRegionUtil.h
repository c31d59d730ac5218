#pragma once
// Shared pieces of the primitives: the region a primitive works on, one
// pixel of a colour in a tile's own format, and runs of that pixel.
#include "ixPixelTypes.h"
#include "ixReadGuard.h"
#include "ixWriteGuard.h"

#include <cstring>

namespace Qv {

// The region given (null: the whole tile) narrowed to the tile's pixels.
inline GeRectangle<int> ipClipRegion(IxTileGuard const& guard, GeRectangle<int> const* region) {
    GeRectangle<int> const& pixels = guard.getPixelRegion();
    return region ? pixels.getIntersection(*region) : pixels;
}

// One pixel of N components of type D holding the colour.
template <int N, class D>
struct IpPixel {
    D comps[N];
    explicit IpPixel(CoRgbaColorTyped<float> const& colour) { ixStoreRgba<N>(comps, colour); }
};

// `count` copies of the pixel from dst on.
template <int N, class D>
void ipFillRun(D* dst, IpPixel<N, D> const& pixel, int count) {
    for (int i = 0; i < count; ++i)
        for (int c = 0; c < N; ++c)
            dst[i * N + c] = pixel.comps[c];
}

// Row y of the tile from column x on, as components of type T.
template <class T, int N>
T* ipPixelsAt(IxWriteGuard const& guard, int x, int y) {
    return guard.getLineAs<T>(y) + static_cast<std::ptrdiff_t>(x - guard.getPixelRegion().x1) * N;
}
template <class T, int N>
T const* ipPixelsAt(IxReadGuard const& guard, int x, int y) {
    return guard.getLineAs<T>(y) + static_cast<std::ptrdiff_t>(x - guard.getPixelRegion().x1) * N;
}

// Calls f(component, comps) with the depth's type and the comps as a constant.
template <class F>
void ipVisitFormat(IxPixelFormat const& format, char const* operation, F&& f) {
    ixVisitDepth(format, operation,
                 [&](auto component) { ixVisitComps(format, [&](auto comps) { f(component, comps); }); });
}

} // namespace Qv
