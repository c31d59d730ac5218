#include "piBoundaryControllers.h"

#include "piGraph.h"
#include "piGroupTopologyInterface.h"
#include "piNode.h"
#include "piProcBuilder.h"

namespace Qv {

void PiInputBoundaryController::createProcNodes(OutputPublisher& publisher) {
    RCShdPtr<PiNode> node = getNode();
    PiNode* group = node->getGraph() ? node->getGraph()->getGroupNode() : nullptr;
    QV_ASSERT(group != nullptr);
    RCShdPtr<PiInput> groupInput = group->getInput(node->getName(), true);
    PxStrongHndl<PxNode const> procNode = PiProcBuilder::getInputProcNode(*groupInput);
    if (auto* topology = group->getInterface<PiGroupTopologyInterface>())
        procNode = topology->createInputProcNode(groupInput, procNode);
    publisher.publish(node->getOutputs().front(), procNode);
}

} // namespace Qv
