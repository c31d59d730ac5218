#pragma once
// "Perona-Malik Diffusion Filtering": a few explicit anisotropic diffusion
// iterations of a vector image, stopped at edges by the two coefficients of
// "Perona-Malik Diffusion Coefficients". An iteration per proxy level above
// the finest, at most "Iterations".
#include "pxHandles.h"
#include "pxImageProtocol.h"

#include <string>

namespace Qv {

class BtPMFilterTool {
public:
    static void registerTool();
    static std::string const& getToolName();
    static std::string const& getIterationsInputName(); // "Iterations"

    // The filter node alone: `iterations` is a PxAnimValueProtocol<int>.
    static PxStrongHndl<PxImageProtocol> createPxNode(PxStrongHndl<PxNode const> const& vectors,
                                                      PxStrongHndl<PxNode const> const& coefficients,
                                                      PxStrongHndl<PxNode const> const& iterations);
    // The same with a constant number of iterations, as the motion graph uses.
    static PxStrongHndl<PxImageProtocol> createPxNode(PxStrongHndl<PxNode const> const& vectors,
                                                      PxStrongHndl<PxNode const> const& coefficients,
                                                      int iterations);

    // How many iterations a request at the proxy scale runs: min(proxyScale + 1, iterations).
    static int getIterationCount(int proxyScale, int iterations);
};

} // namespace Qv
