#pragma once
// An input or an output of a node: a name and a type. The node owns its
// sockets; a socket outliving its node (a pointer kept somewhere) reports no
// node.
#include "piSocketType.h"
#include "rcBase.h"
#include "rcShdPtr.h"

#include <string>

namespace Qv {

class PiNode;

class PiSocket : public RCBase<> {
public:
    std::string const& getName() const { return _name; }
    PiSocketType getType() const { return _type; }
    // Null once the node is gone.
    RCShdPtr<PiNode> getNode() const;
    PiNode* getNodePtr() const { return _node; }
    // Added to the node after its tool declared its sockets.
    bool isDynamic() const { return _dynamic; }
    virtual bool isInput() const = 0;
    // A value of channels (a colour), each channel an input of its own
    // behind the socket's value node.
    bool isStructured() const { return _type.isStructured(); }
    // Takes several connections at once.
    virtual bool isMultivalued() const { return false; }
    // "<node>.<socket>", as users name it.
    std::string getFullName() const;

protected:
    PiSocket(PiNode& node, std::string name, PiSocketType type, bool dynamic)
        : _node(&node), _name(std::move(name)), _type(type), _dynamic(dynamic) {}

private:
    friend class PiNode;

    PiNode* _node;
    std::string _name;
    PiSocketType _type;
    bool _dynamic;
};

} // namespace Qv
