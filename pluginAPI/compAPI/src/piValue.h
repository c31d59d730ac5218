#pragma once
// A value a node stores beside its sockets (a tool's settings). Setting it is
// one undoable change, and the node's controller is told.
#include "piValueType.h"
#include "piVariant.h"
#include "rcBase.h"
#include "rcShdPtr.h"

namespace Qv {

class PiNode;

class PiValue : public RCBase<> {
public:
    std::string const& getName() const { return _name; }
    PiValueType getType() const { return _type; }
    PiVariant const& getData() const { return _data; }
    // Throws PiEx::ExBadValue for a value of another type. An unchanged
    // value makes no change.
    void setData(PiVariant const& data);
    RCShdPtr<PiNode> getNode() const;

private:
    friend class PiNode;

    PiValue(PiNode& node, std::string name, PiValueType type, PiVariant data)
        : _node(&node), _name(std::move(name)), _type(type), _data(std::move(data)) {}
    void apply(PiVariant const& data);

    PiNode* _node;
    std::string _name;
    PiValueType _type;
    PiVariant _data;
};

} // namespace Qv
