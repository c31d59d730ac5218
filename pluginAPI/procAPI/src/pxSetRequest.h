#pragma once
// A state change of a node: calls one setter with one value, run by the
// request manager while no other request runs, so that no evaluation ever
// sees a node half changed.
#include "pxHandles.h"
#include "pxRequest.h"

#include <type_traits>

namespace Qv {

template <class Node, class Arg>
class PxSetRequest : public PxRequest {
public:
    using Setter = void (Node::*)(Arg);
    using Value = std::remove_cvref_t<Arg>;

    PxSetRequest(PxNodePtr<Node> node, Setter setter, Value value)
        : _node(std::move(node)), _setter(setter), _value(std::move(value)) {}

    std::string getRequestType() const override { return "Set"; }
    bool isExclusive() const override { return true; }
    void performExecute() override { (_node.get()->*_setter)(_value); }

private:
    PxNodePtr<Node> _node;
    Setter _setter;
    Value _value;
};

} // namespace Qv
