#pragma once
// An image node that stands in for another: every image operation goes to
// the current child, which a set request may swap without rebuilding the
// nodes above.
#include "pxImageProtocol.h"
#include "pxPassThroughNode.h"

namespace Qv {

class PxImagePassThroughNode : public PxPassThroughNode<PxImageProtocol, PxImageProtocol> {
public:
    PxImagePassThroughNode(PxNode::Init const& init, PxStrongHndl<PxImageProtocol const> const& child)
        : PxNode(init), PxPassThroughNode<PxImageProtocol, PxImageProtocol>(init, child) {}

    PxResult<PxImageFormat> getImageFormat() const override { return getChild()->getImageFormat(); }
    PxRODResult getImageROD(PxTimeStreamContext const& context) const override {
        return getChild()->getImageROD(context);
    }
    PxImageResult getImageResult(PxImageContext const& context) const override {
        return getChild()->getImageResult(context);
    }
    bool isChainConnected() const override { return getChild()->isChainConnected(); }
    bool producesFullFrames() const override { return getChild()->producesFullFrames(); }
    int getNbStreams() const override { return getChild()->getNbStreams(); }
};

} // namespace Qv
