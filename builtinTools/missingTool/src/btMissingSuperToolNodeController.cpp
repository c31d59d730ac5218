#include "btMissingSuperToolNodeController.h"

#include "btMissingToolNodeController.h"
#include "msgServer.h"
#include "msgSubscription.h"
#include "piNode.h"
#include "piProcNodeFactory.h"

namespace Qv {

namespace {
MsgSubscription gMissingMessage("MSG_TOOL_NODE_MISSING");
} // namespace

OPtrRet<PiNodeController> BtMissingSuperToolNodeController::create() {
    return std::make_unique<BtMissingSuperToolNodeController>();
}

void BtMissingSuperToolNodeController::subscribeMessages() {
    MsgServer::getInstance().subscribe(gMissingMessage);
}

void BtMissingSuperToolNodeController::createOutputProcNode(PiBoundaryTopologyInterface::Publisher& publisher,
                                                            RCShdPtr<PiOutput> const& output,
                                                            PxStrongHndl<PxNode const> const&) const {
    publisher.publish(output, PiProcNodeFactory::createGeneratorNode(output->getType()));
}

// What the inside does is the missing tool's business: nothing to follow.
void BtMissingSuperToolNodeController::innerGraphChanged() {}

void BtMissingSuperToolNodeController::nodeLoaded() {
    RCShdPtr<PiNode> node = getNode();
    QV_ASSERT(node != nullptr);
    BtMissingToolNodeController::warn(gMissingMessage, *node);
    BtMissingToolNodeController::freezeInputs(*this, *node);
}

std::string BtMissingSuperToolNodeController::getNodeXmlDescription(Orientation orientation) const {
    return BtMissingToolNodeController::getSchematicXml(orientation);
}

} // namespace Qv
