#pragma once
// Events of a composition graph, for listeners registered on the graph.
#include <string>

namespace Qv {

class PiGraphEvent {
public:
    virtual ~PiGraphEvent() = default;

    class CommandProcessed;
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

} // namespace Qv
