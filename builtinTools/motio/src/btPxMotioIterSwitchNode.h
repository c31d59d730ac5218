#pragma once
// Chooses the vectors that enter an iteration of the motion analysis: the
// first child (the level above, upscaled) at iteration 0, the second (the
// level's own cache, written by the iteration before) afterwards. Only the
// analysis writes the iteration number, between passes, while no request of
// its graph runs; whoever sets it invalidates what depends on it.
#include "pxHandles.h"
#include "pxImageProtocol.h"

#include <atomic>

namespace Qv {

class BtPxMotioIterSwitchNode : public PxImageProtocol {
public:
    BtPxMotioIterSwitchNode(PxNode::Init const& init, PxNodePtr<PxImageProtocol const> const& first,
                            PxNodePtr<PxImageProtocol const> const& second);
    ~BtPxMotioIterSwitchNode() override;

    static PxStrongHndl<BtPxMotioIterSwitchNode> create(PxStrongHndl<PxNode const> const& first,
                                                        PxStrongHndl<PxNode const> const& second);

    void init() override;
    PxResult<PxImageFormat> getImageFormat() const override;
    PxRODResult getImageROD(PxTimeStreamContext const& context) const override;
    PxImageResult getImageResult(PxImageContext const& context) const override;
    bool isChainConnected() const override;
    int getNbStreams() const override;

    void setIteration(unsigned iteration) const { _iteration.store(iteration, std::memory_order_release); }
    unsigned getIteration() const { return _iteration.load(std::memory_order_acquire); }

private:
    PxImageProtocol const& current() const;

    PxNodePtr<PxImageProtocol const> _first;
    PxNodePtr<PxImageProtocol const> _second;
    mutable std::atomic<unsigned> _iteration{0};
};

} // namespace Qv
