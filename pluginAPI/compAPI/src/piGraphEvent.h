#pragma once
// Events of a composition graph, for listeners registered on the graph.
#include "uuid.h"

#include <string>

namespace Qv {

class PiGraphEvent {
public:
    virtual ~PiGraphEvent() = default;

    class CommandProcessed;
    class NodeRenamed;
    class GraphClosing;
};

// A step of the command stack was done, undone or redone.
class PiGraphEvent::CommandProcessed : public PiGraphEvent {
public:
    // The values of PiCommandStack::State.
    CommandProcessed(int state, std::string label) : _state(state), _label(std::move(label)) {}
    int getState() const { return _state; }
    std::string const& getLabel() const { return _label; }

private:
    int _state;
    std::string _label;
};

class PiNode;

// A node of the graph, or of a group inside it, has a new name: done, undone
// or redone (the command stack tells which is under way).
class PiGraphEvent::NodeRenamed : public PiGraphEvent {
public:
    // The node lives at least as long as the event is dispatched.
    NodeRenamed(PiNode& node, std::string oldName) : _node(&node), _oldName(std::move(oldName)) {}
    PiNode& getNode() const { return *_node; }
    std::string const& getOldName() const { return _oldName; }

private:
    PiNode* _node;
    std::string _oldName;
};

// The root graph of this identity is being destroyed: listeners let go of it.
class PiGraphEvent::GraphClosing : public PiGraphEvent {
public:
    explicit GraphClosing(Uuid uuid) : _uuid(uuid) {}
    Uuid const& getUuid() const { return _uuid; }

private:
    Uuid _uuid;
};

} // namespace Qv
