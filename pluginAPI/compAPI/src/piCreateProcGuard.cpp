#include "piCreateProcGuard.h"

#include "piNode.h"
#include "piProcBuilder.h"
#include "piToolTopologyInterface.h"

#include <exception>

namespace Qv {

PiCreateProcGuard::PiCreateProcGuard(PiToolTopologyInterface& controller)
    : _node(piControllerOf(controller).getNode()), _exceptions(std::uncaught_exceptions()) {
    QV_ASSERT(_node != nullptr);
}

PiCreateProcGuard::~PiCreateProcGuard() {
    // Left by an exception: the outputs keep what they published.
    if (std::uncaught_exceptions() != _exceptions || _released.empty())
        return;
    try {
        std::map<PiOutput*, PxStrongHndl<PxNode const>> published;
        for (auto const& [name, node] : _released)
            published[_node->getOutput(name).get()] = node;
        PiProcBuilder::publish(*_node, published);
    } catch (...) {
        // A destructor cannot pass it on; what was built stays as it was.
    }
}

PxStrongHndl<PxNode const> PiCreateProcGuard::getInputNode(RCShdPtr<PiInput> const& input) {
    QV_ASSERT(input && input->getNodePtr() == _node.get());
    PxStrongHndl<PxNode const> node = PiProcBuilder::getInputProcNode(*input);
    if (auto* topology = _node->getInterface<PiToolTopologyInterface>())
        node = topology->createInputProcNode(input, node);
    return node;
}

void PiCreateProcGuard::releaseOutputNode(std::string const& name, PxStrongHndl<PxNode const> const& node) {
    _node->getOutput(name, true);
    _released[name] = node;
}

} // namespace Qv
