#pragma once
// "Upscale Proxy": the next proxy level of its input made twice as large,
// with the values multiplied by "Scale"; the region of definition stays.
// With a scale of 2 it turns vectors of a coarser level into an estimate for
// the finer one.
#include "pxHandles.h"
#include "pxImageProtocol.h"

#include <string>

namespace Qv {

class BtUpscaleTool {
public:
    static void registerTool();
    static std::string const& getToolName();
    static std::string const& getScaleInputName(); // "Scale"

    // The upscale node alone: `scale` is a PxAnimValueProtocol<double>.
    static PxStrongHndl<PxImageProtocol> createPxNode(PxStrongHndl<PxNode const> const& image,
                                                      PxStrongHndl<PxNode const> const& scale);
    // The same with a constant scale, as the motion graph uses (2.0 or 1.0).
    static PxStrongHndl<PxImageProtocol> createPxNode(PxStrongHndl<PxNode const> const& image, double scale);
};

} // namespace Qv
