#pragma once
// "Vector Increment": a vector field composed with an increment field, the
// increment read where each vector points (see BtVectorIncProc). Without
// increments, or outside the vectors' pixels, the vectors pass unchanged.
#include "pxHandles.h"
#include "pxImageProtocol.h"

#include <string>

namespace Qv {

class BtVectorIncTool {
public:
    static void registerTool();
    static std::string const& getToolName();

    static PxStrongHndl<PxImageProtocol> createPxNode(PxStrongHndl<PxNode const> const& vectors,
                                                      PxStrongHndl<PxNode const> const& increments);
};

} // namespace Qv
