#pragma once
// The controller of a group node (super tool): reaches the node and the
// graph inside it.
#include "rcShdPtr.h"

namespace Qv {

class PiGraph;
class PiNode;

class PiGroupInterface {
public:
    virtual ~PiGroupInterface();

    RCShdPtr<PiNode> getGroupNode() const;
    RCShdPtr<PiGraph> getInnerGraph() const;
    // The inner graph changed: a node was added, removed or reconnected.
    virtual void innerGraphChanged();
};

} // namespace Qv
