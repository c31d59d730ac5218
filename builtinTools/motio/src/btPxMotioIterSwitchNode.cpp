#include "btPxMotioIterSwitchNode.h"

#include "assertions.h"

namespace Qv {

BtPxMotioIterSwitchNode::BtPxMotioIterSwitchNode(PxNode::Init const& init,
                                                 PxNodePtr<PxImageProtocol const> const& first,
                                                 PxNodePtr<PxImageProtocol const> const& second)
    : PxNode(init), PxImageProtocol(init), _first(first), _second(second) {
    QV_ASSERT(!_first.isNull() && !_second.isNull());
}

BtPxMotioIterSwitchNode::~BtPxMotioIterSwitchNode() {
    unregisterChild(_first);
    unregisterChild(_second);
}

PxStrongHndl<BtPxMotioIterSwitchNode>
BtPxMotioIterSwitchNode::create(PxStrongHndl<PxNode const> const& first,
                                PxStrongHndl<PxNode const> const& second) {
    PxNode::Init init;
    PxStrongHndl<BtPxMotioIterSwitchNode> node(new BtPxMotioIterSwitchNode(
        init, PxNodePtr<PxImageProtocol const>(first), PxNodePtr<PxImageProtocol const>(second)));
    PxNode::init(node);
    return node;
}

void BtPxMotioIterSwitchNode::init() {
    PxImageProtocol::init();
    registerChild(_first);
    registerChild(_second);
}

PxImageProtocol const& BtPxMotioIterSwitchNode::current() const {
    return getIteration() == 0 ? *_first : *_second;
}

PxResult<PxImageFormat> BtPxMotioIterSwitchNode::getImageFormat() const {
    return current().getImageFormat();
}

PxRODResult BtPxMotioIterSwitchNode::getImageROD(PxTimeStreamContext const& context) const {
    return current().getImageROD(context);
}

PxImageResult BtPxMotioIterSwitchNode::getImageResult(PxImageContext const& context) const {
    return current().getImageResult(context);
}

bool BtPxMotioIterSwitchNode::isChainConnected() const {
    return current().isChainConnected();
}

int BtPxMotioIterSwitchNode::getNbStreams() const {
    return current().getNbStreams();
}

} // namespace Qv
