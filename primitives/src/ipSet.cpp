#include "ipSet.h"

#include "ipRegionUtil.h"

namespace Qv {

void ipSet(IxWriteGuard const& guard, CoRgbaColorTyped<float> const& colour, GeRectangle<int> const* region) {
    GeRectangle<int> const rect = ipClipRegion(guard, region);
    ipVisitFormat(guard.getPixelFormat(), "ipSet", [&](auto component, auto comps) {
        using D = decltype(component);
        constexpr int N = comps();
        IpPixel<N, D> const pixel(colour);
        for (int y = rect.y1; y < rect.y2; ++y)
            ipFillRun(ipPixelsAt<D, N>(guard, rect.x1, y), pixel, rect.getWidth());
    });
}

} // namespace Qv
