#pragma once
// Lets a controller change what its outputs publish outside createProcNodes
// (a super tool rewiring its inside, an expression rebuilt): while the guard
// lives the controller takes input nodes and releases output nodes; when it
// ends, the outputs publish them and what is downstream is rebuilt.
#include "pxHandles.h"
#include "rcShdPtr.h"

#include <map>
#include <string>

namespace Qv {

class PiInput;
class PiNode;
class PiOutput;
class PiToolTopologyInterface;

class PiCreateProcGuard {
public:
    explicit PiCreateProcGuard(PiToolTopologyInterface& controller);
    ~PiCreateProcGuard();
    PiCreateProcGuard(PiCreateProcGuard const&) = delete;
    PiCreateProcGuard& operator=(PiCreateProcGuard const&) = delete;

    // What feeds the input now, through the controller's createInputProcNode.
    PxStrongHndl<PxNode const> getInputNode(RCShdPtr<PiInput> const& input);
    // The node the output publishes from the end of the guard on. Throws
    // PiEx::ExUnknownSocket for a name the node does not have.
    void releaseOutputNode(std::string const& name, PxStrongHndl<PxNode const> const& node);

private:
    RCShdPtr<PiNode> _node;
    std::map<std::string, PxStrongHndl<PxNode const>> _released;
    int _exceptions;
};

} // namespace Qv
