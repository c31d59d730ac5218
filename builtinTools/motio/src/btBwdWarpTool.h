#pragma once
// The "Backward Warp" tool: the image input read back along the "Vectors"
// input, in pixelized coordinates. An inner tool of the motion analysis,
// listed in the Test category.
#include "pxHandles.h"
#include "pxImageProtocol.h"

#include <string>

namespace Qv {

class BtBwdWarpTool {
public:
    static void registerTool();
    static std::string const& getToolName();         // "Backward Warp"
    static std::string const& getVectorsInputName(); // "Vectors"
    // The processing node alone, without a controller: what the motion graph builds.
    static PxStrongHndl<PxImageProtocol> createPxNode(PxStrongHndl<PxNode const> const& image,
                                                      PxStrongHndl<PxNode const> const& vectors);
};

} // namespace Qv
