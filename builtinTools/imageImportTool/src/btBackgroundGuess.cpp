#include "btBackgroundGuess.h"

#include "ixScanline.h"

#include <algorithm>
#include <cmath>

namespace Qv {

bool BtBackgroundGuess::guess(IxReadGuard const& guard, CoRgbColorTyped<float>& colour) {
    using Rgba = CoRgbaColorTyped<float>;
    float constexpr eps = 1.1920929e-7f;
    float constexpr eps2 = 2.3841858e-7f;
    GeRectangle<int> const& region = guard.getPixelRegion();
    if (region.isEmpty())
        return false;
    bool found = false;
    CoRgbColorTyped<float> result{0.0f, 0.0f, 0.0f};
    IxScanline<Rgba> line(region.getXInterval());
    for (int y = region.y1; y < region.y2; ++y) {
        line.readFrom(guard, y);
        for (int x = region.x1; x < region.x2; ++x) {
            Rgba const& p = line[x];
            float const t = std::isinf(p.a) ? 0.0f : std::fabs(p.a);
            if (eps * t >= p.a) {
                colour = {p.r, p.g, p.b};
                return true;
            }
            float const t2 = std::isinf(p.a) ? 0.0f : std::max(1.0f, std::fabs(p.a));
            if (p.a >= 1.0f - eps2 * t2)
                continue;
            float const s = 1.0f / (1.0f - p.a);
            CoRgbColorTyped<float> const candidate{p.r * s, p.g * s, p.b * s};
            if (found)
                result = {std::min(result.r, candidate.r), std::min(result.g, candidate.g),
                          std::min(result.b, candidate.b)};
            else
                result = candidate;
            found = true;
        }
    }
    if (found)
        colour = result;
    return found;
}

} // namespace Qv
