#include "piTopologyInterface.h"

#include "piOutput.h"

namespace Qv {

PiTopologyInterface::~PiTopologyInterface() = default;

bool PiTopologyInterface::canAddInputToComposite(RCShdPtr<PiInput> const&, RCShdPtr<PiOutput> const&) {
    return true;
}

bool PiTopologyInterface::canMoveInputInComposite(RCShdPtr<PiInput> const&, int, int) {
    return true;
}

bool PiTopologyInterface::canRemoveInputFromComposite(RCShdPtr<PiInput> const&, int) {
    return true;
}

void PiTopologyInterface::inputAddedToComposite(RCShdPtr<PiInput> const&, int) {}

void PiTopologyInterface::inputMovedInComposite(RCShdPtr<PiInput> const&, int, int) {}

void PiTopologyInterface::inputRemovedFromComposite(RCShdPtr<PiInput> const&, int) {}

void PiTopologyInterface::inputConnected(RCShdPtr<PiInput> const&) {}

void PiTopologyInterface::inputDisconnected(RCShdPtr<PiInput> const&) {}

void PiTopologyInterface::outputConnected(RCShdPtr<PiOutput> const&, RCShdPtr<PiInput> const&) {}

void PiTopologyInterface::outputDisconnected(RCShdPtr<PiOutput> const&, RCShdPtr<PiInput> const&) {}

void PiTopologyInterface::resultStateChanged() {}

PiTopologyInterface* PiTopologyInterface::getImp() {
    return this;
}

PxWeakHndl<PxNode const>
PiTopologyInterface::getOutputProcNode(RCShdPtr<PiOutput const> const& output) const {
    return PxWeakHndl<PxNode const>(output->getProcNode());
}

} // namespace Qv
