// Colour and time inputs: their text, a colour's channels as inputs of their
// own (set, animated, driven one by one), a time counted in its node's rate.
#include "compTestTools.h"
#include "piEx.h"
#include "piSocketUtil.h"

using namespace Qv;
using namespace Qv::CompTest;

namespace {

CoRgbColorTyped<float> colourAt(RCShdPtr<PiNode> const& node, double time) {
    return PiTypedAnimSocket<CoRgbColorTyped<float>, PiOutput>(node->getOutput("Output")).getValue(time);
}

} // namespace

TEST(ColorAndTimeText, ReadsWhatItWritesAndRefusesTheRest) {
    struct Case {
        PiSocketType type;
        char const* text;
        char const* written; // nullptr: refused
    };
    Case const cases[] = {
        {PiSocketType::COLOR, "0.25 0.5 1.5", "0.25 0.5 1.5"},
        {PiSocketType::COLOR, "  -1\t0 3e+38 ", "-1 0 3e+38"},
        {PiSocketType::COLOR, "1 2", nullptr},
        {PiSocketType::COLOR, "1 2 3 4", nullptr},
        {PiSocketType::COLOR, "1 x 3", nullptr},
        {PiSocketType::COLOR, "1 inf 3", nullptr},
        {PiSocketType::TIME, "12@24", "12@24"},
        {PiSocketType::TIME, "1001@30000/1001", "1001@30000/1001"},
        {PiSocketType::TIME, "-3@25", "-3@25"},
        {PiSocketType::TIME, "12", "12"},
        {PiSocketType::TIME, "12@0", nullptr},
        {PiSocketType::TIME, "12@-24", nullptr},
        {PiSocketType::TIME, "12@", nullptr},
        {PiSocketType::TIME, "@24", nullptr},
        {PiSocketType::TIME, "1.5@24", nullptr},
        {PiSocketType::TIME, "12@24/0", nullptr},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.text);
        if (!c.written) {
            EXPECT_THROW(PiVariantUtil::fromString(c.type, c.text), PiEx::ExBadValue);
            continue;
        }
        PiVariant const value = PiVariantUtil::fromString(c.type, c.text);
        EXPECT_TRUE(PiVariantUtil::holdsType(value, c.type));
        EXPECT_EQ(PiVariantUtil::toString(value), c.written);
    }
    EXPECT_EQ(PiSocketType::stringToType("color"), PiSocketType(PiSocketType::COLOR));
    EXPECT_EQ(PiSocketType::stringToType("time"), PiSocketType(PiSocketType::TIME));
}

TEST_F(GraphTest, AColourIsOneInputOfThreeChannels) {
    ScopedTool tool(std::make_unique<PaintTool>());
    RCShdPtr<PiGraph> graph(new PiGraph);
    RCShdPtr<PiNode> node = graph->createNode(tool.getName(), "P");
    RCShdPtr<PiInput> tint = node->getInput("Tint");
    EXPECT_TRUE(tint->isStructured());
    EXPECT_FALSE(tint->isMultivalued());
    EXPECT_EQ(colourAt(node, 0.0), (CoRgbColorTyped<float>{0.5f, 0.5f, 0.5f})) << "the policy's default";

    RCShdPtr<PiInput> green = PiSocketUtil::findInput(*graph, "P.Tint.Green");
    EXPECT_EQ(green, tint->getChannel("Green"));
    EXPECT_EQ(green->getFullName(), "P.Tint.Green");
    EXPECT_THROW(PiSocketUtil::findInput(*graph, "P.Tint.Alpha"), PiEx::ExUnknownSocket);
    EXPECT_THROW(PiSocketUtil::findInput(*graph, "P.Mark.Red"), PiEx::ExUnknownSocket);

    tint->setConstantValue(std::vector<double>{1.0, 2.0, 3.0});
    green->getValueInterface().setKeyframeVariant(0.0, 0.0);
    green->getValueInterface().setKeyframeVariant(2.0, 4.0);
    EXPECT_EQ(colourAt(node, 1.0), (CoRgbColorTyped<float>{1.0f, 2.0f, 3.0f}));
    PxResult<CoRgbColorTyped<float>> const before =
        PiTypedAnimSocket<CoRgbColorTyped<float>, PiOutput>(node->getOutput("Output")).getResult(-1.0);
    EXPECT_EQ(before.getVI().getEnd(), 0.0) << "the colour holds only as long as its animated channel";

    // Each channel keeps the policy of the colour.
    EXPECT_THROW(green->setConstantValue(11.0), PiEx::ExValueRefused);
    EXPECT_THROW(tint->setConstantValue(std::vector<double>{1.0, 1.0, -1.0}), PiEx::ExValueRefused);
    EXPECT_EQ(colourAt(node, 1.0), (CoRgbColorTyped<float>{1.0f, 2.0f, 3.0f}));

    // A channel may be driven alone.
    ScopedTool scale(scaleTool());
    RCShdPtr<PiNode> source = graph->createNode("Scale", "S");
    source->getInput("Value")->setConstantValue(7.0);
    graph->connect(source->getOutput("Output"), green);
    EXPECT_EQ(colourAt(node, 1.0), (CoRgbColorTyped<float>{1.0f, 7.0f, 3.0f}));
    source->getInput("Gain")->setConstantValue(0.5);
    EXPECT_EQ(colourAt(node, 1.0), (CoRgbColorTyped<float>{1.0f, 3.5f, 3.0f}));
    graph->disconnect(green);
    EXPECT_EQ(colourAt(node, 1.0), (CoRgbColorTyped<float>{1.0f, 2.0f, 3.0f}));
}

TEST_F(GraphTest, ATimeCountsInItsNodesRate) {
    ScopedTool tool(std::make_unique<PaintTool>());
    RCShdPtr<PiGraph> graph(new PiGraph);
    RCShdPtr<PiNode> node = graph->createNode(tool.getName(), "P");
    RCShdPtr<PiInput> mark = node->getInput("Mark");
    EXPECT_FALSE(mark->isStructured());

    mark->setConstantValue(PiVariantUtil::fromString(PiSocketType::TIME, "12"));
    EXPECT_EQ(PiVariantUtil::toString(mark->getValueAt(0.0)), "12@24")
        << "a bare frame takes the node's rate";
    mark->setConstantValue(DtTime(DtTimeIndex(5), Rational(25, 1)));
    PiValueInterfaceBase& values = mark->getValueInterface();
    values.setKeyframeVariant(1.0, DtTime(DtTimeIndex(30), Rational(30, 1)));
    values.setKeyframeVariant(3.0, DtTime(DtTimeIndex(90), Rational(30, 1)));
    using TimeOutput = PiTypedAnimSocket<DtTime, PiOutput>;
    PxResult<DtTime> const held = TimeOutput(node->getOutput("When")).getResult(2.0);
    EXPECT_EQ(held.getValue(), DtTime(DtTimeIndex(30), Rational(30, 1))) << "times hold between keyframes";
    EXPECT_EQ(held.getVI().getStart(), 1.0);
    EXPECT_LT(held.getVI().getEnd(), 3.0);
    graph->getCommandStack().undo();
    EXPECT_EQ(TimeOutput(node->getOutput("When")).getValue(5.0), DtTime(DtTimeIndex(30), Rational(30, 1)));
}
