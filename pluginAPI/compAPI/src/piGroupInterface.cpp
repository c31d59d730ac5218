#include "piGroupInterface.h"

#include "piGraph.h"
#include "piNode.h"
#include "piNodeController.h"

namespace Qv {

PiGroupInterface::~PiGroupInterface() = default;

RCShdPtr<PiNode> PiGroupInterface::getGroupNode() const {
    return piControllerOf(*this).getNode();
}

RCShdPtr<PiGraph> PiGroupInterface::getInnerGraph() const {
    RCShdPtr<PiNode> node = getGroupNode();
    return node ? node->getInnerGraph() : RCShdPtr<PiGraph>();
}

void PiGroupInterface::innerGraphChanged() {}

} // namespace Qv
