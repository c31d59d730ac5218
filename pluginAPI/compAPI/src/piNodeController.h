#pragma once
// The controller of one node: owned by the node, told of the node's life,
// and the place where the tool's own behaviour lives. A concrete controller
// inherits one base per interface it offers, with this class as a virtual
// base. Application thread only.
#include "assertions.h"
#include "cbDispatcher.h"
#include "piNodeEvent.h"
#include "rcShdPtr.h"

#include <map>
#include <memory>
#include <typeindex>

namespace Qv {

class PiNode;

class PiNodeController {
public:
    virtual ~PiNodeController();

    // A new node was placed (not called for a loaded one).
    virtual void nodeCreated();
    // The node was read from a composition, its connections made.
    virtual void nodeLoaded();
    virtual void nodeRemoved();
    // The composition holding the node is closing.
    virtual void nodeUnloaded();
    virtual void nameChanged();

    // Null until the node binds the controller, and once the node is gone.
    RCShdPtr<PiNode> getNode() const;

    // Subscribes `handler` (borrowed) to the events of the prototype's type.
    void addCallback(PiNodeEvent const& prototype, CbHandler<PiNodeEvent const>* handler);
    void removeCallback(PiNodeEvent const& prototype, CbHandler<PiNodeEvent const>* handler);

protected:
    PiNodeController() = default;

private:
    friend class PiNode;
    friend class PiNodeControllerManip;

    void signal(PiNodeEvent const& event);

    PiNode* _node = nullptr;
    std::map<std::type_index, std::unique_ptr<CbDispatcher<PiNodeEvent const>>> _dispatchers;
};

// The controller an interface base belongs to: every interface of a
// controller reaches its node through it. Asserts that it is one.
template <class Interface>
PiNodeController& piControllerOf(Interface const& part) {
    auto const* controller = dynamic_cast<PiNodeController const*>(&part);
    QV_ASSERT(controller != nullptr);
    return const_cast<PiNodeController&>(*controller);
}

} // namespace Qv
