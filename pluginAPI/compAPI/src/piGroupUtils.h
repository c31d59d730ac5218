#pragma once
// Names and ancestry of nodes across nested groups. A node's name relative
// to a group is the names of the groups in between and its own, joined by
// the socket separator; relative to no group (null) it starts at the root.
#include "rcShdPtr.h"

#include <string>

namespace Qv {

class PiNode;
class PiSocket;

class PiGroupUtils {
public:
    static RCShdPtr<PiNode> getNode(RCShdPtr<PiSocket const> const& socket);
    static std::string getName(RCShdPtr<PiNode const> const& node, RCShdPtr<PiNode const> const& group);
    // The innermost group holding both nodes; null when that is the root graph.
    static RCShdPtr<PiNode> findCommonAncestor(RCShdPtr<PiNode const> const& a,
                                               RCShdPtr<PiNode const> const& b);
};

} // namespace Qv
