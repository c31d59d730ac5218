#pragma once
// The vectors a tool publishes when it can either compute them or take them
// from an input: the computed ones, or the external ones connected to the
// tool. "Calculate Motion" (read at time 0, true when the tool has none)
// turns the computation off; with it on, vectors connected to either input
// are taken as they are, so that a user who connects one direction only gets
// nothing computed for the other. Every operation goes to the chosen child.
#include "pxAnimValueProtocol.h"
#include "pxImageProtocol.h"

namespace Qv {

class BtPxVectorSwitchNode : public PxImageProtocol {
public:
    enum Choice { COMPUTED = 0, EXTERNAL = 1 };

    // `computed` and `external` are required; `otherExternal` (the external
    // vectors of the other direction) and `calculate` may be null.
    BtPxVectorSwitchNode(PxNode::Init const& init, PxNodePtr<PxImageProtocol const> const& computed,
                         PxNodePtr<PxImageProtocol const> const& external,
                         PxNodePtr<PxImageProtocol const> const& otherExternal,
                         PxNodePtr<PxAnimValueProtocol<int> const> const& calculate);
    ~BtPxVectorSwitchNode() override;

    // Builds and initialises the node; off the workers.
    static PxStrongHndl<PxImageProtocol> create(PxStrongHndl<PxNode const> const& computed,
                                                PxStrongHndl<PxNode const> const& external,
                                                PxStrongHndl<PxNode const> const& otherExternal,
                                                PxStrongHndl<PxNode const> const& calculate);

    // The selection: external unless the computation is on and neither
    // external input is connected.
    static Choice choose(bool calculate, bool externalConnected, bool otherExternalConnected);
    // The choice now, from the children.
    Choice getChoice() const;

    void init() override;
    PxResult<PxImageFormat> getImageFormat() const override;
    PxRODResult getImageROD(PxTimeStreamContext const& context) const override;
    PxImageResult getImageResult(PxImageContext const& context) const override;
    bool isChainConnected() const override;
    bool producesFullFrames() const override;
    int getNbStreams() const override;

private:
    PxNodePtr<PxImageProtocol const> const& getSelected() const;

    PxNodePtr<PxImageProtocol const> _computed;
    PxNodePtr<PxImageProtocol const> _external;
    PxNodePtr<PxImageProtocol const> _otherExternal;
    PxNodePtr<PxAnimValueProtocol<int> const> _calculate;
};

} // namespace Qv
