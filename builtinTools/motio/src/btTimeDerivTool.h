#pragma once
// "Time Derivative": an image at the next frame minus the image itself. The
// motion graph builds the same difference without a tool node through
// createPxNode, against the frame the analysis goes towards.
#include "btMotioTypes.h"
#include "pxHandles.h"
#include "pxImageProtocol.h"

namespace Qv {

class BtTimeDerivTool {
public:
    // Registers "Time Derivative" in the Test category.
    static void registerTool();

    // `image` one frame later (forward vectors) or earlier (backward
    // vectors), minus `second`: with the frame warped towards that target as
    // `second`, what motion the warp has not yet explained; with `image`
    // itself, the raw difference between the frames.
    static PxStrongHndl<PxImageProtocol> createPxNode(PxStrongHndl<PxNode const> const& image,
                                                      PxStrongHndl<PxNode const> const& second,
                                                      BtMotioTypes::VectorType vectorType);
};

} // namespace Qv
