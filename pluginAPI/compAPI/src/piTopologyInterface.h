#pragma once
// What a controller is told of its node's connections, shared by plain tools
// and super tools.
#include "pxHandles.h"
#include "rcShdPtr.h"

namespace Qv {

class PiInput;
class PiOutput;

class PiTopologyInterface {
public:
    virtual ~PiTopologyInterface();

    // A multiple input (a composite) takes one more connection, moves one,
    // or drops one; the controller may refuse.
    virtual bool canAddInputToComposite(RCShdPtr<PiInput> const& input, RCShdPtr<PiOutput> const& output);
    virtual bool canMoveInputInComposite(RCShdPtr<PiInput> const& input, int from, int to);
    virtual bool canRemoveInputFromComposite(RCShdPtr<PiInput> const& input, int index);
    virtual void inputAddedToComposite(RCShdPtr<PiInput> const& input, int index);
    virtual void inputMovedInComposite(RCShdPtr<PiInput> const& input, int from, int to);
    virtual void inputRemovedFromComposite(RCShdPtr<PiInput> const& input, int index);
    virtual void inputConnected(RCShdPtr<PiInput> const& input);
    virtual void inputDisconnected(RCShdPtr<PiInput> const& input);
    virtual void outputConnected(RCShdPtr<PiOutput> const& output, RCShdPtr<PiInput> const& input);
    virtual void outputDisconnected(RCShdPtr<PiOutput> const& output, RCShdPtr<PiInput> const& input);
    // The results of the node's processing nodes changed as a whole.
    virtual void resultStateChanged();
    virtual PiTopologyInterface* getImp();

    // The processing node published on one of the node's outputs; expired
    // when none is.
    PxWeakHndl<PxNode const> getOutputProcNode(RCShdPtr<PiOutput const> const& output) const;
};

} // namespace Qv
