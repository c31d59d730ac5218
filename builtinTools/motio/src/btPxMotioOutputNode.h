#pragma once
// One vector output of a motion node: a pass-through whose tiles are the
// node's vectors of one type (nominal units), everything else the node's.
#include "btMotioTypes.h"
#include "pxImageProtocol.h"
#include "pxPassThroughNode.h"

namespace Qv {

template <class Node>
class BtPxMotioOutputNode : public PxPassThroughNode<PxImageProtocol, Node> {
public:
    BtPxMotioOutputNode(PxNode::Init const& init, PxStrongHndl<Node const> const& node,
                        BtMotioTypes::VectorType vectorType)
        : PxNode(init), PxPassThroughNode<PxImageProtocol, Node>(init, node), _vectorType(vectorType) {}

    // A new output node, initialised; off the workers.
    static PxStrongHndl<PxImageProtocol> create(PxStrongHndl<Node const> const& node,
                                                BtMotioTypes::VectorType vectorType) {
        PxNode::Init init;
        PxStrongHndl<BtPxMotioOutputNode> output(new BtPxMotioOutputNode(init, node, vectorType));
        PxNode::init(output);
        return PxStrongHndl<PxImageProtocol>(output);
    }

    PxResult<PxImageFormat> getImageFormat() const override { return this->getChild()->getImageFormat(); }
    PxRODResult getImageROD(PxTimeStreamContext const& context) const override {
        return this->getChild()->getImageROD(context);
    }
    PxImageResult getImageResult(PxImageContext const& context) const override {
        return this->getChild()->getVectorsResult(context, _vectorType);
    }
    bool isChainConnected() const override { return this->getChild()->isChainConnected(); }
    int getNbStreams() const override { return this->getChild()->getNbStreams(); }

private:
    BtMotioTypes::VectorType _vectorType;
};

} // namespace Qv
