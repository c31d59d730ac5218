#pragma once
// Helpers of the image tests: assertion texts, and tiles filled by formula.
#include "assertions.h"
#include "ixPixelUtil.h"
#include "ixTile.h"
#include "ixWriteGuard.h"

#include <functional>
#include <string>

namespace Qv::IxTest {

// The short names every image test uses.
using F = IxPixelFormat;
using Rect = GeRectangle<int>;
using Rgba = CoRgbaColorTyped<float>;

// The text of the assertion that `work` raised, or "" if it raised none.
inline std::string assertionText(std::function<void()> const& work) {
    try {
        work();
    } catch (AssertionsEx::ExAssertionFailed const& error) {
        return error.getReason();
    }
    return "";
}

// A tile whose pixel (x, y) is colourAt(x, y), through the slow per-pixel path.
inline IxTile makeTile(IxPixelFormat const& format, GeRectangle<int> const& region,
                       std::function<CoRgbaColorTyped<float>(int, int)> const& colourAt,
                       CoRgbaColorTyped<float> const& fill = CoRgbaColorTyped<float>::ZERO) {
    IxTile tile(format, region, fill);
    IxWriteGuard guard(tile);
    for (int y = region.y1; y < region.y2; ++y)
        for (int x = region.x1; x < region.x2; ++x)
            IxPixelUtil::setPixelColor(guard, x, y, colourAt(x, y));
    return tile;
}

} // namespace Qv::IxTest
