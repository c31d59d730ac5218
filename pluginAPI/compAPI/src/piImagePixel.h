#pragma once
// The application thread's read of one pixel of an image node: only the tile
// that holds it is computed, on a worker, so that a kernel can be looked at
// pixel by pixel without computing its whole frame.
#include "coColor.h"
#include "geRectangle.h"
#include "pxHandles.h"

namespace Qv {

struct PiImagePixel {
    // The node's pixel region at the proxy scale.
    GeRectangle<int> region;
    // False when the pixel lies outside the region; value is then unset.
    bool inside = false;
    // The pixel read as RGBA floats.
    CoRgbaColorTyped<float> value{0.0f, 0.0f, 0.0f, 0.0f};
};

// The pixel at `column`, `row` counted from the top-left pixel of the node's
// pixel region at `time` and `proxyScale`. Rethrows what the evaluation threw.
PiImagePixel piComputeImagePixel(PxStrongHndl<PxNode const> const& node, double time, int proxyScale,
                                 int column, int row);

} // namespace Qv
