#pragma once
// One pixel at a time, as RGBA floats, for slow paths (a corner's value, a
// test's fixture). Kernels work on whole lines instead.
#include "coColor.h"
#include "ixReadGuard.h"
#include "ixWriteGuard.h"

namespace Qv {

struct IxPixelUtil {
    // The pixel at (x, y); the tile's fill colour outside its region.
    static CoRgbaColorTyped<float> getPixelColor(IxReadGuard const& guard, int x, int y);
    // Asserts that (x, y) lies in the tile's region.
    static void setPixelColor(IxWriteGuard const& guard, int x, int y, CoRgbaColorTyped<float> const& colour);
};

} // namespace Qv
