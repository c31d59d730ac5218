#pragma once
// Searches through the connections of a composition graph, crossing group
// boundaries, for the first node a predicate accepts.
//
// depthFirst goes upstream, from what feeds each input to what feeds that,
// one branch to its end before the next. heightFirst goes downstream, level
// by level, so that it finds the nearest node. A socket filter limits the
// inputs followed (upstream) or reached (downstream).
#include "prdPredicate.h"
#include "rcShdPtr.h"

#include <functional>

namespace Qv {

class PiInput;
class PiNode;

using PiNodePredicate = PrdPredicate<RCShdPtr<PiNode const>>;

class PiGraphSearch {
public:
    using SocketFilter = std::function<bool(RCShdPtr<PiInput const> const&)>;

    // The start node itself is tested first. Null when none is accepted.
    static RCShdPtr<PiNode const> depthFirst(RCShdPtr<PiNode const> const& start,
                                             PiNodePredicate const& predicate,
                                             SocketFilter const& filter = {});
    static RCShdPtr<PiNode const> heightFirst(RCShdPtr<PiNode const> const& start,
                                              PiNodePredicate const& predicate,
                                              SocketFilter const& filter = {});
};

// A node of a tool (not a value or boundary node).
struct PiIsToolNode {
    static PiNodePredicate getPredicate();
};
// A node that nothing feeds.
struct PiIsLeafNode {
    static PiNodePredicate getPredicate();
};
// A node holding an inner graph.
struct PiIsGroupNode {
    static PiNodePredicate getPredicate();
};
// A node of one of the expression tools (PiExpressionServices).
struct PiIsExpressionNode {
    static PiNodePredicate getPredicate();
};

} // namespace Qv
