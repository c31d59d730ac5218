#pragma once
// "Perona-Malik Diffusion Coefficients": the two edge-stopping coefficients
// of the diffusion, per pixel, from an image gradient and a time derivative.
// RGB FLOAT32: red exp(-s), green 1 / (1 + s), blue 0.
#include "pxHandles.h"
#include "pxImageProtocol.h"

#include <string>

namespace Qv {

class BtPMCoefsTool {
public:
    static void registerTool();
    static std::string const& getToolName();

    // The coefficient node alone, without a controller: what the motion graph builds.
    static PxStrongHndl<PxImageProtocol> createPxNode(PxStrongHndl<PxNode const> const& gradient,
                                                      PxStrongHndl<PxNode const> const& timeDerivative);
};

} // namespace Qv
