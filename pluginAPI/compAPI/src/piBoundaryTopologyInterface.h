#pragma once
// The boundary of a group: where the processing nodes of the inner graph
// become those of the group's outputs.
#include "pxHandles.h"
#include "rcShdPtr.h"

namespace Qv {

class PiOutput;

class PiBoundaryTopologyInterface {
public:
    class Publisher {
    public:
        virtual ~Publisher() = default;
        virtual void publish(RCShdPtr<PiOutput> const& output, PxStrongHndl<PxNode const> const& node) = 0;
    };
};

} // namespace Qv
