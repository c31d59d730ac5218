#include "piNodeController.h"

#include "piNode.h"

namespace Qv {

PiNodeController::~PiNodeController() = default;

void PiNodeController::nodeCreated() {}

void PiNodeController::nodeLoaded() {}

void PiNodeController::nodeRemoved() {}

void PiNodeController::nodeUnloaded() {}

void PiNodeController::nameChanged() {}

RCShdPtr<PiNode> PiNodeController::getNode() const {
    return RCShdPtr<PiNode>(_node);
}

void PiNodeController::addCallback(PiNodeEvent const& prototype, CbHandler<PiNodeEvent const>* handler) {
    auto& dispatcher = _dispatchers[std::type_index(typeid(prototype))];
    if (!dispatcher)
        dispatcher = std::make_unique<CbDispatcher<PiNodeEvent const>>();
    dispatcher->addCallback(handler);
}

void PiNodeController::removeCallback(PiNodeEvent const& prototype, CbHandler<PiNodeEvent const>* handler) {
    auto it = _dispatchers.find(std::type_index(typeid(prototype)));
    if (it != _dispatchers.end())
        it->second->removeCallback(handler);
}

void PiNodeController::signal(PiNodeEvent const& event) {
    auto it = _dispatchers.find(std::type_index(typeid(event)));
    if (it != _dispatchers.end())
        it->second->dispatch(event);
}

} // namespace Qv
