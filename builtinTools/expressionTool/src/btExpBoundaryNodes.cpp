#include "btExpBoundaryNodes.h"

#include "piGraph.h"
#include "piInput.h"
#include "piNode.h"
#include "piOutput.h"
#include "piTool.h"

namespace Qv {

namespace {

PiNode const* groupOfInputBoundary(PiNode const& node) {
    if (node.getKind() != PiNode::INPUT_BOUNDARY_NODE)
        return nullptr;
    PiGraph const* graph = node.getGraph();
    return graph ? graph->getGroupNode() : nullptr;
}

bool isSuperTool(PiNode const& group) {
    RCShdPtr<PiTool const> const& tool = group.getTool();
    return tool && tool->getProtocol().isSuperTool();
}

} // namespace

bool IsInputBoundaryNode(PiNode const& node) {
    PiNode const* group = groupOfInputBoundary(node);
    return group && !isSuperTool(*group);
}

bool IsSuperToolInputBoundaryNode(PiNode const& node) {
    PiNode const* group = groupOfInputBoundary(node);
    return group && isSuperTool(*group);
}

RCShdPtr<PiOutput> SkipBoundaryNodes(RCShdPtr<PiOutput> const& output) {
    RCShdPtr<PiOutput> current = output;
    while (current) {
        PiNode const* node = current->getNodePtr();
        PiNode const* group = node ? groupOfInputBoundary(*node) : nullptr;
        if (!group)
            return current;
        RCShdPtr<PiInput> input = group->getInput(node->getName());
        current = input ? input->getDriver() : RCShdPtr<PiOutput>();
    }
    return current;
}

} // namespace Qv
