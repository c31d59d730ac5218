#pragma once
// "Lucas-Kanade Flow": from an image's gradient and its time derivative, the
// increment of motion per pixel that one iteration of the analysis adds, at
// most one pixel in each direction, in pixels of the level in use. Pixels
// within two of the image's edge are left out (alpha 1); computed ones carry
// alpha 0.
#include "pxHandles.h"
#include "pxImageProtocol.h"

namespace Qv {

class BtFlowLKTool {
public:
    // Registers "Lucas-Kanade Flow" in the Test category.
    static void registerTool();

    // The flow node alone: gradient (gx, gy in red and green) and time
    // derivative (first component). Three components, the gradient's depth.
    static PxStrongHndl<PxImageProtocol> createPxNode(PxStrongHndl<PxNode const> const& gradient,
                                                      PxStrongHndl<PxNode const> const& timeDerivative);
};

} // namespace Qv
