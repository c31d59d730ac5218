// The Value Source tool as a composition uses it.
#include "btValueSourceTool.h"
#include "inInitMgr.h"
#include "piEx.h"
#include "piGraph.h"
#include "piToolRegistry.h"
#include "piTypedAnimSocket.h"
#include "piUserInterface.h"
#include "piValueInterface.h"

#include <gtest/gtest.h>

using namespace Qv;

namespace {

class ValueSource : public ::testing::Test {
protected:
    static void SetUpTestSuite() { InInitMgr::getInstance().initializeAll(); }

    RCShdPtr<PiGraph> _graph{new PiGraph};

    static PxResult<double> evaluate(RCShdPtr<PiNode> const& node, double time = 0.0) {
        return PiTypedAnimSocket<double, PiOutput>(node->getOutput("Output", true)).getResult(time);
    }
};

} // namespace

TEST_F(ValueSource, IsAnInternalToolFoundByItsFullName) {
    RCShdPtr<PiTool const> tool = BtValueSourceTool::getTool();
    ASSERT_TRUE(tool);
    PiToolProtocol const& protocol = tool->getProtocol();
    EXPECT_EQ(protocol.getShortToolName(), "Value Source");
    EXPECT_EQ(tool->getName(), PiOstrandToolProtocol::getOstrandToolName("Value Source"));
    EXPECT_EQ(protocol.getCategory(), ".");
    EXPECT_EQ(protocol.getSchemaNb(), 1);
    EXPECT_EQ(protocol.getDescription(), "Value Source Tool");
    EXPECT_TRUE(protocol.isInternal());
    EXPECT_FALSE(protocol.isSuperTool());
    EXPECT_FALSE(tool->isListed());
    PiToolSignature const& signature = tool->getSignature();
    ASSERT_EQ(signature.getInputs().size(), 1u);
    EXPECT_EQ(signature.getInputs()[0].name, "Value");
    EXPECT_EQ(signature.getInputs()[0].type, PiSocketType::DOUBLE);
    EXPECT_EQ(signature.getInputs()[0].cardinality, SINGLE);
    ASSERT_EQ(signature.getOutputs().size(), 1u);
    EXPECT_EQ(signature.getOutputs()[0].name, "Output");
}

TEST_F(ValueSource, ANewNodeGivesZeroAndThenTheValueSet) {
    RCShdPtr<PiNode> node = _graph->createNode("Value Source", "V");
    EXPECT_EQ(evaluate(node).getValue(), 0.0);
    EXPECT_TRUE(node->getOutput("Output")->getProcNode()->isInitialized());
    node->getInput("Value")->setConstantValue(0.25);
    PxResult<double> result = evaluate(node);
    EXPECT_EQ(result.getValue(), 0.25);
    EXPECT_EQ(result.getVI(), PxValidityInterval::FULL);
}

TEST_F(ValueSource, ThePolicyBindsWhatIsSetNotWhatFlows) {
    RCShdPtr<PiNode> node = _graph->createNode("Value Source", "V");
    EXPECT_THROW(node->getInput("Value")->setConstantValue(7.5), PiEx::ExValueRefused);
    EXPECT_EQ(evaluate(node).getValue(), 0.0);

    // A stored value out of the range, as a hand-edited composition holds it.
    PiNodeSpec spec = PiNodeSpec::fromTool(BtValueSourceTool::getTool());
    spec.name = "Loaded";
    spec.inputs[0].curve = PiNodeSpec::Curve{7.5, {}};
    RCShdPtr<PiNode> loaded = _graph->restoreNode(std::move(spec));
    _graph->notifyLoaded();
    _graph->buildProcNodes();
    EXPECT_EQ(evaluate(loaded).getValue(), 7.5) << "a loaded node keeps its value and forwards it unchanged";

    RCShdPtr<PiNode> driven = _graph->createNode("Value Source", "Driven");
    _graph->connect(loaded->getOutput("Output"), driven->getInput("Value"));
    EXPECT_EQ(evaluate(driven).getValue(), 7.5);
}

TEST_F(ValueSource, ForwardsTheIntervalOfItsInput) {
    RCShdPtr<PiNode> node = _graph->createNode("Value Source", "V");
    PiValueInterfaceBase& value = node->getInput("Value")->getValueInterface();
    value.setKeyframeVariant(0.0, 0.0);
    value.setKeyframeVariant(1.0, 1.0);
    PxResult<double> between = evaluate(node, 0.25);
    EXPECT_DOUBLE_EQ(between.getValue(), 0.25);
    EXPECT_EQ(between.getVI(), PxValidityInterval(0.25, 0.25));
    EXPECT_EQ(evaluate(node, 3.0).getVI(), PxValidityInterval(1.0, PxValidityInterval::TIME_MAX));
}

TEST_F(ValueSource, DescribesItsPanelFromTheInterfaceFile) {
    RCShdPtr<PiNode> node = _graph->createNode("Value Source", "V");
    auto* ui = node->getInterface<PiUserInterface>();
    ASSERT_NE(ui, nullptr);
    EXPECT_EQ(ui->getXmlFileName(), "<ToolUiDir>/valueSource.xml");
    EXPECT_NE(ui->getXmlDescription().find("input=\"Value\""), std::string::npos);
}
