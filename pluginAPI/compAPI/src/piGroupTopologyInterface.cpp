#include "piGroupTopologyInterface.h"

namespace Qv {

bool PiGroupTopologyInterface::canAddDynamicInput(std::string const&, PiSocketType, Cardinality) {
    return false;
}

bool PiGroupTopologyInterface::canAddDynamicOutput(std::string const&, PiSocketType) {
    return false;
}

bool PiGroupTopologyInterface::canRenameDynamicInput(RCShdPtr<PiInput> const&, std::string const&) {
    return false;
}

bool PiGroupTopologyInterface::canRenameDynamicOutput(RCShdPtr<PiOutput> const&, std::string const&) {
    return false;
}

bool PiGroupTopologyInterface::canRemoveDynamicInput(RCShdPtr<PiInput> const&) {
    return false;
}

bool PiGroupTopologyInterface::canRemoveDynamicOutput(RCShdPtr<PiOutput> const&) {
    return false;
}

PxStrongHndl<PxNode const>
PiGroupTopologyInterface::createInputProcNode(RCShdPtr<PiInput> const&,
                                              PxStrongHndl<PxNode const> const& node) {
    return node;
}

void PiGroupTopologyInterface::createOutputProcNode(PiBoundaryTopologyInterface::Publisher& publisher,
                                                    RCShdPtr<PiOutput> const& output,
                                                    PxStrongHndl<PxNode const> const& node) const {
    publisher.publish(output, node);
}

void PiGroupTopologyInterface::dynamicInputAdded(RCShdPtr<PiInput> const&) {}

void PiGroupTopologyInterface::dynamicInputRenamed(RCShdPtr<PiInput> const&, std::string const&) {}

void PiGroupTopologyInterface::dynamicInputRemoved(RCShdPtr<PiInput> const&) {}

void PiGroupTopologyInterface::dynamicOutputAdded(RCShdPtr<PiOutput> const&) {}

void PiGroupTopologyInterface::dynamicOutputRenamed(RCShdPtr<PiOutput> const&, std::string const&) {}

void PiGroupTopologyInterface::dynamicOutputRemoved(RCShdPtr<PiOutput> const&) {}

} // namespace Qv
