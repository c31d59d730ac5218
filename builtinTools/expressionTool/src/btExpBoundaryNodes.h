#pragma once
// The boundary nodes of groups, as the expression tools see them. Inside a
// group each of its inputs stands as a node of that name; an expression
// there may read it like any node. Where a value really comes from lies
// behind such nodes: SkipBoundaryNodes follows a connection through them.
#include "rcShdPtr.h"

namespace Qv {

class PiNode;
class PiOutput;

// The inner side of an input of a group that is not a super tool.
bool IsInputBoundaryNode(PiNode const& node);
// The inner side of an input of a super tool's node.
bool IsSuperToolInputBoundaryNode(PiNode const& node);
// The first output behind `output` that is not a group input's inner side:
// `output` itself when it is not one; null when a group input on the way is
// unconnected.
RCShdPtr<PiOutput> SkipBoundaryNodes(RCShdPtr<PiOutput> const& output);

} // namespace Qv
