#pragma once
// An output of a node: the inputs it feeds, and the processing node the
// node's controller published on it, which this output keeps alive.
#include "piSocket.h"
#include "pxHandles.h"

#include <vector>

namespace Qv {

class PiInput;

class PiOutput : public PiSocket {
public:
    bool isInput() const override { return false; }
    std::vector<RCShdPtr<PiInput>> getConnectedInputs() const;
    bool isConnected() const { return !_inputs.empty(); }
    // Null until the node's processing nodes are built.
    PxStrongHndl<PxNode const> const& getProcNode() const { return _procNode; }

private:
    friend class PiNode;
    friend class PiGraph;
    friend class PiProcBuilder;

    PiOutput(PiNode& node, std::string name, PiSocketType type, bool dynamic)
        : PiSocket(node, std::move(name), type, dynamic) {}

    std::vector<PiInput*> _inputs;
    PxStrongHndl<PxNode const> _procNode;
};

} // namespace Qv
