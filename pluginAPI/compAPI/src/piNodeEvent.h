#pragma once
// Events a node's controller sends to those who subscribed with
// PiNodeController::addCallback. A handler subscribes to one event type,
// named by a prototype object of that type.
#include "piVariant.h"

#include <string>

namespace Qv {

class PiNodeEvent {
public:
    virtual ~PiNodeEvent() = default;

    class ValueChanged;
    class NameChanged;
    class ConnectionChanged;
};

// A stored value or an input's value (constant or keyframes) changed.
class PiNodeEvent::ValueChanged : public PiNodeEvent {
public:
    ValueChanged() = default;
    ValueChanged(std::string name, PiVariant value, bool input)
        : _name(std::move(name)), _value(std::move(value)), _input(input) {}
    // The name of the stored value or the input.
    std::string const& getName() const { return _name; }
    // The new value; empty for an input that is animated.
    PiVariant const& getValue() const { return _value; }
    bool isInput() const { return _input; }

private:
    std::string _name;
    PiVariant _value;
    bool _input = false;
};

class PiNodeEvent::NameChanged : public PiNodeEvent {
public:
    NameChanged() = default;
    explicit NameChanged(std::string oldName) : _oldName(std::move(oldName)) {}
    std::string const& getOldName() const { return _oldName; }

private:
    std::string _oldName;
};

// One of the node's inputs was connected or disconnected.
class PiNodeEvent::ConnectionChanged : public PiNodeEvent {
public:
    ConnectionChanged() = default;
    explicit ConnectionChanged(std::string input) : _input(std::move(input)) {}
    std::string const& getInputName() const { return _input; }

private:
    std::string _input;
};

} // namespace Qv
