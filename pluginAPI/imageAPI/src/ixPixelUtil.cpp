#include "ixPixelUtil.h"

#include "ixPixelTypes.h"

namespace Qv {

CoRgbaColorTyped<float> IxPixelUtil::getPixelColor(IxReadGuard const& guard, int x, int y) {
    if (!guard.getPixelRegion().contains(x, y))
        return guard.getFillColor();
    return ixVisitDepth(guard.getPixelFormat(), "IxPixelUtil::getPixelColor", [&](auto component) {
        using T = decltype(component);
        auto const* pixel = reinterpret_cast<T const*>(guard.getPixel(x, y));
        return ixVisitComps(guard.getPixelFormat(), [&](auto comps) { return ixLoadRgba<comps()>(pixel); });
    });
}

void IxPixelUtil::setPixelColor(IxWriteGuard const& guard, int x, int y,
                                CoRgbaColorTyped<float> const& colour) {
    ixVisitDepth(guard.getPixelFormat(), "IxPixelUtil::setPixelColor", [&](auto component) {
        using T = decltype(component);
        auto* pixel = reinterpret_cast<T*>(guard.getPixel(x, y));
        ixVisitComps(guard.getPixelFormat(), [&](auto comps) { ixStoreRgba<comps()>(pixel, colour); });
    });
}

} // namespace Qv
