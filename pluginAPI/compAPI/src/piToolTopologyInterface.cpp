#include "piToolTopologyInterface.h"

#include "piGraph.h"
#include "piNode.h"
#include "piNodeController.h"
#include "piProcBuilder.h"

namespace Qv {

bool PiToolTopologyInterface::canAddDynamicInput(std::string const&, PiSocketType, Cardinality) {
    return false;
}

bool PiToolTopologyInterface::canRenameDynamicInput(RCShdPtr<PiInput> const&, std::string const&) {
    return false;
}

bool PiToolTopologyInterface::canRemoveDynamicInput(RCShdPtr<PiInput> const&) {
    return false;
}

bool PiToolTopologyInterface::isRecreateProcNodesDisabled() const {
    return false;
}

PxStrongHndl<PxNode const>
PiToolTopologyInterface::createInputProcNode(RCShdPtr<PiInput> const&,
                                             PxStrongHndl<PxNode const> const& node) {
    return node;
}

PxStrongHndl<PxNode const>
PiToolTopologyInterface::createOutputProcNode(RCShdPtr<PiOutput> const&,
                                              PxStrongHndl<PxNode const> const& node) {
    return node;
}

void PiToolTopologyInterface::dynamicInputAdded(RCShdPtr<PiInput> const&) {}

void PiToolTopologyInterface::dynamicInputRemoved(RCShdPtr<PiInput> const&) {}

void PiToolTopologyInterface::forceCreateProcNodes() {
    RCShdPtr<PiNode> node = piControllerOf(*this).getNode();
    QV_ASSERT(node != nullptr);
    PiProcBuilder::rebuild({node.get()}, true);
}

void PiToolTopologyInterface::forceCreateProcNodesIfBuilt() {
    RCShdPtr<PiNode> node = piControllerOf(*this).getNode();
    if (!node || !node->getGraph())
        return;
    for (RCShdPtr<PiOutput> const& output : node->getOutputs())
        if (!output->getProcNode().isNull()) {
            forceCreateProcNodes();
            return;
        }
}

} // namespace Qv
