#pragma once
// Processing nodes the host supplies to tools.
#include "piSocketType.h"
#include "pxHandles.h"
#include "rcShdPtr.h"

namespace Qv {

class PiOutput;

class PiProcNodeFactory {
public:
    // A neutral node of a socket's type: a value node giving the type's zero
    // at all times, or for an image an empty image (PxEmptyImageNode).
    // Initialised, ready to publish.
    static PxStrongHndl<PxNode const> createGeneratorNode(PiSocketType type);
    // The node to publish on an output for `node`: the host keeps nothing of
    // its own at an output, so it is `node` itself.
    static PxStrongHndl<PxNode const> createOutputNode(RCShdPtr<PiOutput> const& output,
                                                       PxStrongHndl<PxNode const> const& node);
};

} // namespace Qv
