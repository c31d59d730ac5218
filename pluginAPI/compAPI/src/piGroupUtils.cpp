#include "piGroupUtils.h"

#include "piGraph.h"
#include "piNode.h"
#include "piSocketUtil.h"

#include <algorithm>
#include <vector>

namespace Qv {

namespace {

// The groups holding a node, innermost first (a value node counts as inside
// its tool node's graph).
std::vector<PiNode*> groupsOf(PiNode const& node) {
    std::vector<PiNode*> groups;
    for (PiGraph* graph = node.getGraph(); graph && graph->getGroupNode();
         graph = graph->getGroupNode()->getGraph())
        groups.push_back(graph->getGroupNode());
    return groups;
}

} // namespace

RCShdPtr<PiNode> PiGroupUtils::getNode(RCShdPtr<PiSocket const> const& socket) {
    return socket ? socket->getNode() : RCShdPtr<PiNode>();
}

std::string PiGroupUtils::getName(RCShdPtr<PiNode const> const& node, RCShdPtr<PiNode const> const& group) {
    if (!node)
        return {};
    std::string name = node->getName();
    for (PiNode* outer : groupsOf(*node)) {
        if (outer == group.get())
            break;
        name = outer->getName() + PiSocketUtil::getSocketSeparator() + name;
    }
    return name;
}

RCShdPtr<PiNode> PiGroupUtils::findCommonAncestor(RCShdPtr<PiNode const> const& a,
                                                  RCShdPtr<PiNode const> const& b) {
    if (!a || !b)
        return {};
    std::vector<PiNode*> groupsA = groupsOf(*a);
    std::vector<PiNode*> groupsB = groupsOf(*b);
    for (PiNode* group : groupsA)
        if (std::find(groupsB.begin(), groupsB.end(), group) != groupsB.end())
            return RCShdPtr<PiNode>(group);
    return {};
}

} // namespace Qv
