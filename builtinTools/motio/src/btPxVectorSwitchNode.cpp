#include "btPxVectorSwitchNode.h"

#include "assertions.h"

namespace Qv {

BtPxVectorSwitchNode::BtPxVectorSwitchNode(PxNode::Init const& init,
                                           PxNodePtr<PxImageProtocol const> const& computed,
                                           PxNodePtr<PxImageProtocol const> const& external,
                                           PxNodePtr<PxImageProtocol const> const& otherExternal,
                                           PxNodePtr<PxAnimValueProtocol<int> const> const& calculate)
    : PxNode(init), PxImageProtocol(init), _computed(computed), _external(external),
      _otherExternal(otherExternal), _calculate(calculate) {
    QV_ASSERT(!_computed.isNull());
    QV_ASSERT(!_external.isNull());
}

BtPxVectorSwitchNode::~BtPxVectorSwitchNode() {
    unregisterChild(_computed);
    unregisterChild(_external);
    unregisterChild(_otherExternal);
    unregisterChild(_calculate);
}

PxStrongHndl<PxImageProtocol> BtPxVectorSwitchNode::create(PxStrongHndl<PxNode const> const& computed,
                                                           PxStrongHndl<PxNode const> const& external,
                                                           PxStrongHndl<PxNode const> const& otherExternal,
                                                           PxStrongHndl<PxNode const> const& calculate) {
    PxNode::Init init;
    PxStrongHndl<BtPxVectorSwitchNode> node(new BtPxVectorSwitchNode(
        init, PxNodePtr<PxImageProtocol const>(computed), PxNodePtr<PxImageProtocol const>(external),
        PxNodePtr<PxImageProtocol const>(otherExternal),
        PxNodePtr<PxAnimValueProtocol<int> const>(calculate)));
    PxNode::init(node);
    return PxStrongHndl<PxImageProtocol>(node);
}

void BtPxVectorSwitchNode::init() {
    PxNode::init();
    // Every child, the one not chosen too: a connection or a "Calculate
    // Motion" change upstream changes which one answers.
    registerChild(_computed);
    registerChild(_external);
    if (!_otherExternal.isNull())
        registerChild(_otherExternal);
    if (!_calculate.isNull())
        registerChild(_calculate);
}

BtPxVectorSwitchNode::Choice BtPxVectorSwitchNode::choose(bool calculate, bool externalConnected,
                                                          bool otherExternalConnected) {
    if (!calculate || externalConnected || otherExternalConnected)
        return EXTERNAL;
    return COMPUTED;
}

BtPxVectorSwitchNode::Choice BtPxVectorSwitchNode::getChoice() const {
    bool calculate = true;
    if (!_calculate.isNull()) {
        PxResult<int> value;
        // A setting of the tool, not an animation: read once, at time 0.
        _calculate->getAnimValue(value, PxTimeContext(0.0));
        calculate = value.getValue() != 0;
    }
    return choose(calculate, _external->isChainConnected(),
                  !_otherExternal.isNull() && _otherExternal->isChainConnected());
}

PxNodePtr<PxImageProtocol const> const& BtPxVectorSwitchNode::getSelected() const {
    return getChoice() == EXTERNAL ? _external : _computed;
}

PxResult<PxImageFormat> BtPxVectorSwitchNode::getImageFormat() const {
    return getSelected()->getImageFormat();
}

PxRODResult BtPxVectorSwitchNode::getImageROD(PxTimeStreamContext const& context) const {
    return getSelected()->getImageROD(context);
}

PxImageResult BtPxVectorSwitchNode::getImageResult(PxImageContext const& context) const {
    return PxUPtr<PxImageProtocol const>(getSelected())->getImageResult(context);
}

bool BtPxVectorSwitchNode::isChainConnected() const {
    return getSelected()->isChainConnected();
}

bool BtPxVectorSwitchNode::producesFullFrames() const {
    return getSelected()->producesFullFrames();
}

int BtPxVectorSwitchNode::getNbStreams() const {
    return getSelected()->getNbStreams();
}

} // namespace Qv
