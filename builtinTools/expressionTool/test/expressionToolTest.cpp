// Expressions on parameters as a composition holds them: attached through
// the host's services, validated against the graph, built into dynamic
// inputs, cast to the parameter's type, undone, renamed and reloaded.
#include "../../../pluginAPI/compAPI/test/compTestTools.h"
#include "btExpAttributeAdjuster.h"
#include "btExpBoundaryNodes.h"
#include "btExpParser.h"
#include "btExpressionTool.h"
#include "msgServer.h"
#include "omCompositionFile.h"
#include "piExpressionInterface.h"
#include "piExpressionServices.h"
#include "piSocketUtil.h"
#include "piUndoGuard.h"
#include "xmlWriter.h"

#include <filesystem>
#include <sstream>

using namespace Qv;
using namespace Qv::CompTest;

namespace {

// Count (integer) and Flag (boolean) parameters, and outputs giving them;
// Tint, a colour that expressions cannot read.
class ProbeController : public PiToolTopologyInterface,
                        public PiToolInterface,
                        public virtual PiNodeController {
public:
    void createProcNodes(OutputPublisher& publisher) override {
        publisher.publish(getNode()->getOutput("CountOut", true), publisher.getInputProcNode("Count"));
        publisher.publish(getNode()->getOutput("FlagOut", true), publisher.getInputProcNode("Flag"));
    }
};

ToolSpec probeTool() {
    ToolSpec spec;
    spec.name = "Probe";
    spec.describe = [](PiToolDescriptor& d) {
        d.requires_("Count", PiSocketType::INTEGER, SINGLE);
        d.requires_("Flag", PiSocketType::BOOLEAN, SINGLE);
        d.requires_("Tint", PiSocketType::COLOR, SINGLE);
        d.produces("CountOut", PiSocketType::INTEGER);
        d.produces("FlagOut", PiSocketType::BOOLEAN);
    };
    spec.createController = [] { return std::make_unique<ProbeController>(); };
    return spec;
}

class Expressions : public GraphTest {
protected:
    Expressions() {
        _graph->createNode("Scale", "S")->getInput("Value")->setConstantValue(3.0);
        _graph->createNode("Scale", "P");
        _graph->createNode("Probe", "Q");
        RCShdPtr<PiNode> group = _graph->createNode("Group", "G");
        group->getInput("In")->setConstantValue(5.0);
        group->getInnerGraph()->createNode("Scale", "N")->getInput("Value")->setConstantValue(7.0);
    }

    static PiExpressionServices& services() { return *PiExpressionServices::getInstance(); }
    PiExpressionInterface& attach(std::string const& path, std::string const& text) {
        PiExpressionInterface& expression =
            services().getOrCreateExpression(PiSocketUtil::findInput(*_graph, path));
        expression.setExpression(text);
        return expression;
    }
    RCShdPtr<PiInput> input(std::string const& path) const { return PiSocketUtil::findInput(*_graph, path); }
    template <class T>
    T read(std::string const& path, double time = 0.0) const {
        return PiTypedAnimSocket<T, PiInput>(input(path)).getValue(time);
    }
    static std::vector<RCShdPtr<PiInput>> referencesOf(PiExpressionInterface& expression) {
        std::vector<RCShdPtr<PiInput>> inputs;
        for (RCShdPtr<PiInput> const& in : expression.getResultOutput()->getNode()->getInputs())
            if (in->isDynamic())
                inputs.push_back(in);
        return inputs;
    }

    ScopedTool _scale{scaleTool()};
    ScopedTool _group{groupTool()};
    ScopedTool _probe{probeTool()};
    RCShdPtr<PiGraph> _graph{new PiGraph};
};

} // namespace

TEST_F(Expressions, ResolveReferencesOrRefuseThemWithTheirColumns) {
    struct Case {
        char const* text;
        double value;        // of P.Value when accepted
        char const* refusal; // part of the error text, or null
        int first;
        int last;
    };
    Case const cases[] = {
        {"S.Output", 3.0, nullptr, 0, 0},
        {" S . Value *2", 6.0, nullptr, 0, 0},
        {"G.N.Output", 7.0, nullptr, 0, 0}, // into the group
        {"G.In", 5.0, nullptr, 0, 0},       // the group's own attribute
        {"Gain", 1.0, nullptr, 0, 0},       // beside the driven parameter
        {"Q.CountOut + Q.Flag", 0.0, nullptr, 0, 0},
        {"1 + Nope.Output", 0, "there is no node named \"Nope\"", 4, 16}, // the blank joins the reference
        {"S.Nope", 0, "Unknown attribute: S.Nope", 1, 7},
        {"G.Nope.Output", 0, "there is no node named \"Nope\"", 1, 14},
        {"S.", 0, "Unknown attribute: S", 1, 2}, // the dot is left over
        {"Q.Tint", 0, "an attribute of type color cannot be used", 1, 7},
        {"S.Label", 0, "Unknown attribute: S.Label", 1, 8},
        {"Value*2", 0, "depends on the parameter", 1, 6}, // the driven parameter itself
        {"P.Output", 0, "depends on the parameter", 1, 9},
        {"(1,2,3)", 0, "Unsupported expression type", 1, 8},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.text);
        PiExpressionInterface& expression = attach("P.Value", c.text);
        EXPECT_EQ(expression.getExpression(), c.text) << "the text is kept as typed";
        EXPECT_EQ(expression.isExpressionValid(), c.refusal == nullptr) << expression.getErrorText();
        if (c.refusal) {
            EXPECT_NE(expression.getErrorText().find(c.refusal), std::string::npos)
                << expression.getErrorText();
            EXPECT_EQ(expression.getErrorFirstColumn(), c.first);
            EXPECT_EQ(expression.getErrorLastColumn(), c.last);
            EXPECT_TRUE(referencesOf(expression).empty());
            EXPECT_EQ(read<double>("P.Value"), 0.0) << "the parameter reads the default";
        } else {
            EXPECT_EQ(read<double>("P.Value"), c.value);
        }
    }
}

TEST_F(Expressions, ABareNameIsSearchedOutwardsThroughTheGroups) {
    RCShdPtr<PiNode> group = _graph->getNode("G");
    RCShdPtr<PiInput> inner = group->getInnerGraph()->getNode("N")->getInput("Gain");
    PiExpressionInterface& expression = services().getOrCreateExpression(inner);
    expression.setExpression("In*2");
    EXPECT_TRUE(expression.isExpressionValid()) << expression.getErrorText();
    double const value = PiTypedAnimSocket<double, PiInput>(inner).getValue(0.0);
    EXPECT_EQ(value, 10.0);
}

TEST_F(Expressions, EveryReferenceHasAnInputOfItsOwnConnectedToItsSource) {
    PiExpressionInterface& expression = attach("P.Value", "S.Output+S.Output + Q.CountOut");
    ASSERT_TRUE(expression.isExpressionValid()) << expression.getErrorText();
    std::vector<RCShdPtr<PiInput>> const inputs = referencesOf(expression);
    ASSERT_EQ(inputs.size(), 3u);
    EXPECT_NE(inputs[0]->getName(), inputs[1]->getName());
    EXPECT_NO_THROW(Uuid::fromString(inputs[0]->getName())) << "named by a fresh identifier";
    RCShdPtr<PiOutput> const source = _graph->getNode("S")->getOutput("Output");
    EXPECT_EQ(inputs[0]->getDriver(), source);
    EXPECT_EQ(inputs[1]->getDriver(), source);
    EXPECT_EQ(inputs[2]->getType(), PiSocketType::INTEGER);
    _graph->getNode("Q")->getInput("Count")->setConstantValue(4);
    EXPECT_EQ(read<double>("P.Value"), 10.0) << "values flow through the new inputs";

    expression.setExpression("S.Output");
    EXPECT_EQ(referencesOf(expression).size(), 1u) << "a new text replaces the inputs";
}

TEST_F(Expressions, ResultsAreCastToTheParameterType) {
    struct Case {
        char const* input;
        char const* text;
        double expected;
    };
    Case const cases[] = {
        {"Q.Count", "2.7", 2},   {"Q.Count", "-0.5", -1},
        {"Q.Count", "1<2", 1},   {"Q.Count", "-3", -3},
        {"Q.Flag", "0.5", 1},    {"Q.Flag", "0", 0},
        {"Q.Flag", "1==1", 1},   {"Q.Flag", "0.0000000000000002", 0},
        {"P.Value", "1<2", 1.0}, {"P.Value", "0.25", 0.25},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(std::string(c.input) + " = " + c.text);
        PiExpressionInterface& expression = attach(c.input, c.text);
        ASSERT_TRUE(expression.isExpressionValid()) << expression.getErrorText();
        PiSocketType const type = input(c.input)->getType();
        double const value = type == PiSocketType::INTEGER   ? read<int>(c.input)
                             : type == PiSocketType::BOOLEAN ? read<bool>(c.input)
                                                             : read<double>(c.input);
        EXPECT_EQ(value, c.expected);
    }
}

TEST_F(Expressions, IntegerAndBooleanAttributesReadAsNumbers) {
    _graph->getNode("Q")->getInput("Count")->setConstantValue(3);
    _graph->getNode("Q")->getInput("Flag")->setConstantValue(true);
    attach("P.Value", "Q.CountOut*10 + Q.FlagOut");
    EXPECT_EQ(read<double>("P.Value"), 31.0);
}

TEST_F(Expressions, SetAndClearAreUndoneAsSteps) {
    PiCommandStack& stack = _graph->getCommandStack();
    PiExpressionInterface& expression = attach("P.Value", "S.Output*2");
    EXPECT_EQ(stack.getUndoLabel(), "Set Expression String");
    expression.setExpression("S.Output+1");
    EXPECT_EQ(read<double>("P.Value"), 4.0);
    expression.clearExpression();
    EXPECT_EQ(stack.getUndoLabel(), "Clear Expression String");
    EXPECT_TRUE(input("P.Value")->isDriven()) << "still connected";
    EXPECT_EQ(read<double>("P.Value"), 0.0) << "at the default";

    stack.undo();
    EXPECT_EQ(expression.getExpression(), "S.Output+1");
    EXPECT_TRUE(expression.isExpressionValid());
    EXPECT_EQ(read<double>("P.Value"), 4.0);
    stack.undo();
    EXPECT_EQ(expression.getExpression(), "S.Output*2");
    EXPECT_EQ(referencesOf(expression).size(), 1u);
    EXPECT_EQ(read<double>("P.Value"), 6.0);
    stack.redo();
    EXPECT_EQ(read<double>("P.Value"), 4.0);

    expression.setComment("twice the source");
    EXPECT_EQ(stack.getUndoLabel(), "Set Expression Comment");
    EXPECT_EQ(expression.getComment(), "twice the source");
}

TEST_F(Expressions, ARenameRewritesTheReferencesAndNothingElse) {
    PiExpressionInterface& expression = attach("P.Value", "  S.Output *2 + sin( S . Gain )+G.N.Output");
    ASSERT_TRUE(expression.isExpressionValid()) << expression.getErrorText();
    PiExpressionInterface& other = attach("Q.Count", "G.In");
    _graph->renameNode(_graph->getNode("S"), "Source");
    EXPECT_EQ(expression.getExpression(), "  Source.Output *2 + sin( Source.Gain )+G.N.Output");
    EXPECT_EQ(other.getExpression(), "G.In") << "an expression not reading the node is left alone";
    _graph->getNode("G")->getInnerGraph()->renameNode(_graph->getNode("G")->getInnerGraph()->getNode("N"),
                                                      "M");
    EXPECT_EQ(expression.getExpression(), "  Source.Output *2 + sin( Source.Gain )+G.M.Output");
    EXPECT_TRUE(expression.isExpressionValid());

    _graph->getCommandStack().undo();
    EXPECT_EQ(expression.getExpression(), "  Source.Output *2 + sin( Source.Gain )+G.N.Output")
        << "a rename and what followed from it are one step";
}

TEST_F(Expressions, TheAdjusterCopiesTextAndListsWhatItCannotRebuild) {
    PiExpressionInterface& expression = attach("P.Value", "S.Output + 2*S.Value");
    RCShdPtr<PiNode> node = expression.getResultOutput()->getNode();
    auto adjust = [&](std::string const& text) {
        RCShdPtr<BtExpAttributeAdjuster> adjuster(new BtExpAttributeAdjuster(node, text));
        std::istringstream in(text);
        btExpParse(*adjuster, in);
        return adjuster;
    };
    EXPECT_EQ(adjust("sin(t) * 2 ")->getResult(), "sin(t) * 2 ") << "no reference, nothing changes";
    EXPECT_FALSE(adjust("sin(t)")->hasProblems());

    _graph->disconnect(referencesOf(expression)[1]);
    auto adjuster = adjust("S.Output + 2*S.Value");
    EXPECT_EQ(adjuster->getResult(), "S.Output + 2*S.Value");
    ASSERT_EQ(adjuster->getProblems().size(), 1u);
    EXPECT_EQ(adjuster->getProblems()[0], "S.Value: Attribute is not connected.");

    try {
        adjust("a + b + c");
        FAIL() << "three references, two inputs";
    } catch (BtExpEx const& error) {
        EXPECT_NE(error.getReason().find("Not enough attributes for current expression."), std::string::npos);
    }
}

TEST_F(Expressions, AReloadedCompositionGivesTheSameValues) {
    RCShdPtr<PiNode> s = _graph->getNode("S");
    s->getInput("Value")->getValueInterface().setKeyframeVariant(0.0, 1.0);
    s->getInput("Value")->getValueInterface().setKeyframeVariant(2.0, 5.0);
    attach("P.Value", "S.Output * 2 + G.N.Output");
    attach("Q.Flag", "S.Output > 2");
    double const times[] = {0.0, 0.5, 1.0, 2.0};
    std::vector<double> before;
    for (double time : times)
        before.push_back(read<double>("P.Value", time) + read<bool>("Q.Flag", time));

    XmlElement const xml = OmCompositionFile::toXml(*_graph);
    _graph = OmCompositionFile::fromXml(xml, "test");
    PiExpressionInterface* reloaded = services().findExpression(input("P.Value"));
    ASSERT_NE(reloaded, nullptr);
    EXPECT_EQ(reloaded->getExpression(), "S.Output * 2 + G.N.Output");
    EXPECT_TRUE(reloaded->isExpressionValid());
    for (std::size_t i = 0; i < std::size(times); ++i)
        EXPECT_EQ(read<double>("P.Value", times[i]) + read<bool>("Q.Flag", times[i]), before[i]);
    EXPECT_EQ(XmlWriter::toString(OmCompositionFile::toXml(*_graph)), XmlWriter::toString(xml))
        << "saved back the same";
}

TEST_F(Expressions, ARefusedTextKeepsItsReasonThroughAReload) {
    attach("P.Value", "2*Nope.Output");
    _graph = OmCompositionFile::fromXml(OmCompositionFile::toXml(*_graph), "test");
    PiExpressionInterface* reloaded = services().findExpression(input("P.Value"));
    ASSERT_NE(reloaded, nullptr);
    EXPECT_FALSE(reloaded->isExpressionValid());
    EXPECT_NE(reloaded->getErrorText().find("\"Nope\""), std::string::npos) << reloaded->getErrorText();
    EXPECT_EQ(reloaded->getErrorFirstColumn(), 3);
}

TEST_F(Expressions, AStoredExpressionWhoseSourceIsGoneLoadsWithAWarning) {
    attach("P.Value", "S.Output * 2");
    std::string text = XmlWriter::toString(OmCompositionFile::toXml(*_graph));
    // The file as it would be had S been deleted by hand.
    std::size_t const node = text.find("<node name=\"S\"");
    text.erase(node, text.find("</node>", node) + 7 - node);
    std::vector<std::string> warnings;
    MsgSinkGuard sink([&](MsgSeverity, std::string const& message) { warnings.push_back(message); });
    _graph = OmCompositionFile::fromXml(XmlElement::parse(text), "test");
    PiExpressionInterface* reloaded = services().findExpression(input("P.Value"));
    ASSERT_NE(reloaded, nullptr);
    EXPECT_EQ(reloaded->getExpression(), "S.Output * 2");
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_NE(warnings[0].find("S.Output * 2"), std::string::npos) << warnings[0];
}

TEST_F(Expressions, RemovingTheNodeOrTheExpressionTakesTheExpressionNodeAway) {
    attach("P.Value", "S.Output");
    ASSERT_TRUE(services().removeExpression(input("P.Value")));
    EXPECT_FALSE(input("P.Value")->isDriven());
    EXPECT_FALSE(services().removeExpression(input("P.Value")));
    attach("P.Value", "S.Output");
    std::size_t const nodes = _graph->getNodes().size();
    _graph->removeNode(_graph->getNode("P"));
    EXPECT_EQ(_graph->getNodes().size(), nodes - 2) << "the parameter's expression went with it";
    _graph->removeNode(_graph->getNode("S"));
}

TEST(ExpressionTools, AreRegisteredPerValueType) {
    InInitMgr::getInstance().initializeAll();
    PiExpressionServices& services = *PiExpressionServices::getInstance();
    for (PiSocketType type : {PiSocketType::DOUBLE, PiSocketType::INTEGER, PiSocketType::BOOLEAN}) {
        RCShdPtr<PiTool const> tool = services.createTool(type);
        ASSERT_TRUE(tool);
        EXPECT_EQ(tool->getShortName(), "ExpressionTool" + PiSocketType::typeToString(type));
        EXPECT_EQ(tool->getProtocol().getDescription(), "Mathematical Expression Computation");
        EXPECT_EQ(tool->getProtocol().getSchemaNb(), 1);
        EXPECT_FALSE(tool->isListed());
        EXPECT_TRUE(services.isExpressionToolOfType(*tool, type));
    }
    EXPECT_FALSE(services.createTool(PiSocketType::COLOR));
}

TEST_F(Expressions, BoundaryNodesAreToldApartAndSkipped) {
    RCShdPtr<PiNode> group = _graph->getNode("G");
    RCShdPtr<PiNode> boundary = group->getInnerGraph()->findBoundaryNode("In");
    ASSERT_TRUE(boundary);
    EXPECT_TRUE(IsSuperToolInputBoundaryNode(*boundary)) << "the test group is a super tool";
    EXPECT_FALSE(IsInputBoundaryNode(*boundary));
    EXPECT_FALSE(IsSuperToolInputBoundaryNode(*group->getInnerGraph()->getNode("N")));

    RCShdPtr<PiOutput> inside = boundary->getOutput(PiNode::getValueNodeOutputName(), true);
    EXPECT_FALSE(SkipBoundaryNodes(inside)) << "nothing drives the group's input";
    RCShdPtr<PiOutput> source = _graph->getNode("S")->getOutput("Output");
    _graph->connect(source, group->getInput("In"));
    EXPECT_EQ(SkipBoundaryNodes(inside), source);
    EXPECT_EQ(SkipBoundaryNodes(source), source);
}
