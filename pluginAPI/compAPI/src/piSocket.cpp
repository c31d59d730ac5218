#include "piSocket.h"

#include "piNode.h"
#include "piSocketUtil.h"

namespace Qv {

RCShdPtr<PiNode> PiSocket::getNode() const {
    return RCShdPtr<PiNode>(_node);
}

std::string PiSocket::getFullName() const {
    return (_node ? _node->getName() : std::string()) + PiSocketUtil::getSocketSeparator() + _name;
}

} // namespace Qv
