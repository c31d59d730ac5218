#include "btValueSourceTool.h"

#include "assertions.h"
#include "liString.h"
#include "piNode.h"
#include "piRangeInputPolicy.h"
#include "piToolInterface.h"
#include "piToolRegistry.h"
#include "piToolTopologyInterface.h"
#include "piUserInterface.h"
#include "piUserInterfaceServices.h"
#include "piValueInterface.h"
#include "pxAnimValueProtocol.h"

namespace Qv {

namespace {

LiString const TOOL_NAME("Value Source");
LiString const VALUE_NAME("Value");
LiString const OUTPUT_NAME("Output");
std::string const XML_FILE_NAME("<ToolUiDir>/valueSource.xml");

// Hands on the value of the input's node, for the time asked, with its
// interval. The policy's range binds what a user sets, not what flows here.
class ValueSourceNode : public PxAnimValueProtocol<double> {
public:
    ValueSourceNode(PxNode::Init const& init, PxStrongHndl<PxNode const> const& input)
        : PxNode(init), PxAnimValueProtocol<double>(init), _val(input) {
        QV_ASSERT(!_val.isNull());
    }

    ~ValueSourceNode() override { unregisterChild(_val); }

    void init() override {
        PxNode::init();
        registerChild(_val);
    }

    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        if (_val.isNull())
            RCExUtil::throwExNullPtr(RCExUtil::getTypeName(typeid(PxAnimValueProtocol<double>)));
        PxUPtr<PxAnimValueProtocol<double> const>(_val)->getAnimValue(result, context);
    }

private:
    PxNodePtr<PxAnimValueProtocol<double> const> _val;
};

class ValueSourceController : public PiToolTopologyInterface,
                              public PiToolInterface,
                              public PiUserInterface,
                              public virtual PiNodeController {
public:
    // A new node starts at 0.0, whatever the policy's default; a loaded one
    // keeps what was stored.
    void nodeCreated() override {
        RCShdPtr<PiNode> node = getNode();
        RCShdPtr<PiInput> input = node->getInput(VALUE_NAME, true);
        RCShdPtr<PiNode> valueNode = input->getConnectedOutput()->getNode();
        RCWeakPtr<PiNodeController> controller = valueNode->getController();
        RCStrongPtr<PiValueInterface<double>> value =
            rcCast<PiValueInterface<double>>(controller.getStrong());
        value->setValue(0.0);
    }

    void createProcNodes(OutputPublisher& publisher) override {
        RCShdPtr<PiOutput> output = getNode()->getOutput(OUTPUT_NAME, true);
        PxStrongHndl<PxNode const> input = publisher.getInputProcNode(VALUE_NAME);
        PxNode::Init init;
        PxStrongHndl<PxNode> node(new ValueSourceNode(init, input));
        PxNode::init(node);
        // Published only once initialised: no reader sees a node half made.
        PxWeakHndl<PxNode const> weak(node);
        publisher.publish(output, PxStrongHndl<PxNode const>(weak));
    }

    std::string getXmlDescription() const override {
        return PiUserInterfaceServices::getInstance().getXmlDescription(getXmlFileName());
    }

    std::string getXmlFileName() const override { return XML_FILE_NAME; }
};

} // namespace

BtValueSourceTool::BtValueSourceTool()
    : PiOstrandToolProtocol(TOOL_NAME, PiToolProtocol::getUnlistedCategory(), 1, "Value Source Tool",
                            TOOL_INTERNAL, PLAIN_TOOL) {}

BtValueSourceTool::~BtValueSourceTool() = default;

void BtValueSourceTool::describe(PiToolDescriptor& descriptor) {
    descriptor.requires_(VALUE_NAME, PiSocketType::DOUBLE, SINGLE);
    descriptor.produces(OUTPUT_NAME, PiSocketType::DOUBLE);
}

OPtrRet<PiNodeController> BtValueSourceTool::createController() const {
    auto controller = std::make_unique<ValueSourceController>();
    controller->addInputPolicy(VALUE_NAME, PiRangeInputPolicy<double>::create(0.0, 1.0, 0.0, true, false));
    return controller;
}

RCShdPtr<PiTool const> BtValueSourceTool::getTool() {
    return PiToolRegistry::getInstance().getTool(PiOstrandToolProtocol::getOstrandToolName(TOOL_NAME));
}

} // namespace Qv
