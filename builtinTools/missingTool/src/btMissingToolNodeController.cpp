#include "btMissingToolNodeController.h"

#include "assertions.h"
#include "msgError.h"
#include "msgServer.h"
#include "piNode.h"
#include "piProcNodeFactory.h"
#include "piTypedInputPolicy.h"

#include <array>

namespace Qv {

namespace {

MsgSubscription gMissingMessage("MSG_TOOL_NODE_MISSING");
MsgSubscription gBrokenMessage("MSG_TOOL_NODE_BROKEN");

std::string const SCHEMATIC_H("<ToolUiDir>/missingToolSchematicNodeH.xml");
std::string const SCHEMATIC_V("<ToolUiDir>/missingToolSchematicNodeV.xml");

// The loaded value stays: nothing may set, animate or reset it.
template <class T>
class MissingToolPolicy : public PiTypedInputPolicy<T> {
public:
    MissingToolPolicy() : PiTypedInputPolicy<T>(false) {}
    bool canAnimate() const override { return false; }
    bool isPassAll() const override { return false; }
    bool canSetValue(PiVariant const&) const override { return false; }
    void resetValue(PiInput&) const override {}
};

// An image input carries no value; frozen, a reset leaves its connection.
class MissingToolImagePolicy : public PiInputPolicy {
public:
    bool canAnimate() const override { return false; }
    bool hasSameType(PiSocketType type) const override { return type == PiSocketType::IMAGE; }
    void resetValue(PiInput&) const override {}
    bool canSetValue(PiVariant const&) const override { return false; }
    PiVariant getDefault() const override { return {}; }
};

// By socket type: boolean, double (also each channel of a colour), integer,
// string, time, image.
std::array<RCShdPtr<PiInputPolicy const>, 6> gPolicies;

RCShdPtr<PiInputPolicy const> const& policyFor(PiSocketType type) {
    switch (type.getType()) {
    case PiSocketType::BOOLEAN:
        return gPolicies[0];
    case PiSocketType::DOUBLE:
    case PiSocketType::COLOR:
        return gPolicies[1];
    case PiSocketType::INTEGER:
        return gPolicies[2];
    case PiSocketType::STRING:
        return gPolicies[3];
    case PiSocketType::TIME:
        return gPolicies[4];
    case PiSocketType::IMAGE:
        break;
    }
    return gPolicies[5];
}

} // namespace

BtMissingToolNodeController::BtMissingToolNodeController(Type type) : _type(type) {}

OPtrRet<PiNodeController> BtMissingToolNodeController::createMissing() {
    return std::make_unique<BtMissingToolNodeController>(MISSING);
}

OPtrRet<PiNodeController> BtMissingToolNodeController::createBroken() {
    return std::make_unique<BtMissingToolNodeController>(BROKEN);
}

void BtMissingToolNodeController::initializePolicies() {
    gPolicies = {RCShdPtr<PiInputPolicy const>(new MissingToolPolicy<bool>),
                 RCShdPtr<PiInputPolicy const>(new MissingToolPolicy<double>),
                 RCShdPtr<PiInputPolicy const>(new MissingToolPolicy<int>),
                 RCShdPtr<PiInputPolicy const>(new MissingToolPolicy<std::string>),
                 RCShdPtr<PiInputPolicy const>(new MissingToolPolicy<DtTime>),
                 RCShdPtr<PiInputPolicy const>(new MissingToolImagePolicy)};
}

void BtMissingToolNodeController::finalizePolicies() {
    for (auto& policy : gPolicies)
        policy.reset();
}

void BtMissingToolNodeController::subscribeMessages() {
    MsgServer::getInstance().subscribe(gMissingMessage);
    MsgServer::getInstance().subscribe(gBrokenMessage);
}

void BtMissingToolNodeController::warn(MsgSubscription const& message, PiNode const& node) {
    MsgWarning warning(message);
    warning.substitute(node.getName() + " (" + node.getToolName() + ")");
    warning.substitute(node.getSchemaNb());
    warning.display();
}

void BtMissingToolNodeController::freezeInputs(PiToolInterface& controller, PiNode const& node) {
    for (RCShdPtr<PiInput> const& input : node.getInputs())
        if (!controller.hasExplicitInputPolicy(input)) {
            RCShdPtr<PiInputPolicy const> const& policy = policyFor(input->getType());
            QV_ASSERT(policy != nullptr);
            controller.addInputPolicy(input->getName(), policy);
        }
}

std::string BtMissingToolNodeController::getSchematicXml(Orientation orientation) {
    return readXmlFile(orientation == HORIZONTAL ? SCHEMATIC_H : SCHEMATIC_V);
}

void BtMissingToolNodeController::nodeLoaded() {
    RCShdPtr<PiNode> node = getNode();
    QV_ASSERT(node != nullptr);
    if (_type == MISSING) {
        warn(gMissingMessage, *node);
    } else {
        QV_ASSERT(_type == BROKEN);
        warn(gBrokenMessage, *node);
    }
    freezeInputs(*this, *node);
}

void BtMissingToolNodeController::createProcNodes(OutputPublisher& publisher) {
    // Nothing of the inputs reaches the outputs: the tool that would say how
    // is not here.
    for (RCShdPtr<PiOutput> const& output : getNode()->getOutputs())
        publisher.publish(output, PiProcNodeFactory::createGeneratorNode(output->getType()));
}

std::string BtMissingToolNodeController::getNodeXmlDescription(Orientation orientation) const {
    return getSchematicXml(orientation);
}

} // namespace Qv
