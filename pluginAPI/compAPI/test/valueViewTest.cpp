// Typed views of stored values, and outputs republished outside a build.
#include "compTestTools.h"
#include "piCreateProcGuard.h"
#include "piImageFormatValue.h"
#include "piProcNodeFactory.h"
#include "piTypedValueUtil.h"
#include "pxValueNodes.h"

using namespace Qv;
using namespace Qv::CompTest;

namespace {

ToolSpec storingTool() {
    ToolSpec spec = scaleTool("Storing");
    spec.describe = [](PiToolDescriptor& d) {
        d.requires_("Value", PiSocketType::DOUBLE, SINGLE);
        d.requires_("Gain", PiSocketType::DOUBLE, SINGLE);
        d.produces("Output", PiSocketType::DOUBLE);
        d.stores("Count", PiValueType::INT);
        d.stores("Format", PiValueType::DOUBLE_ARRAY);
    };
    return spec;
}

} // namespace

TEST_F(GraphTest, TypedViewsReadAndWriteStoredValuesAsUndoableChanges) {
    ScopedTool tool(storingTool());
    RCShdPtr<PiGraph> graph(new PiGraph);
    RCShdPtr<PiNode> node = graph->createNode("Storing", "N");

    PiTypedValueUtil<int> count(node->getValue("Count"));
    count.setValue(12);
    EXPECT_EQ(PiConstTypedValueUtil<int>(node->getValue("Count")).getValue(), 12);
    EXPECT_THROW(PiTypedValueUtil<double>(node->getValue("Count")), AssertionsEx::ExAssertionFailed)
        << "a view of another type";
    EXPECT_THROW(PiTypedValueUtil<int>(node->getValue("Absent")), AssertionsEx::ExAssertionFailed);
    EXPECT_TRUE(PiTypedValueUtil<int>(node->getValue("Absent"), CheckNull::NO_CHECK).isNull());

    PiImageFormatValue format(node->getValue("Format"));
    EXPECT_EQ(format.getValue(), PiImageFormat()) << "an empty array is a zero format";
    PiImageFormat hd{1920, 1080, Rational(1, 1), Rational(25, 1)};
    format.setValueAssumed(hd);
    EXPECT_TRUE(format.isAssumed());
    format.setValue(PiImageFormat{720, 576, Rational(16, 15), Rational(25, 1)});
    EXPECT_FALSE(format.isAssumed());
    EXPECT_EQ(format.getValue().pixelAspect, Rational(16, 15));
    graph->getCommandStack().undo();
    EXPECT_EQ(format.getValue(), hd);
    EXPECT_TRUE(format.isAssumed());

    PiTypedValueArrayUtil<double> array(node->getValue("Format"));
    array.setValue(9, 1.5);
    EXPECT_EQ(array.getSize(), 10u) << "setting past the end grows the array";
}

TEST_F(GraphTest, AnOutputRepublishedOutsideABuildRebuildsWhatIsDownstream) {
    ScopedTool tool(scaleTool());
    RCShdPtr<PiGraph> graph(new PiGraph);
    RCShdPtr<PiNode> a = graph->createNode("Scale", "A");
    RCShdPtr<PiNode> b = graph->createNode("Scale", "B");
    graph->connect(a->getOutput("Output"), b->getInput("Value"));
    b->getInput("Gain")->setConstantValue(2.0);
    int builds = scaleOf(b).builds;
    {
        PiCreateProcGuard guard(scaleOf(a));
        EXPECT_TRUE(guard.getInputNode(a->getInput("Value"))->isInitialized());
        PxNode::Init init;
        PxStrongHndl<PxNode> constant(
            new PxConstantAnimValueNode<double>(init, PxResult<double>(4.0, PxValidityInterval::FULL)));
        PxNode::init(constant);
        guard.releaseOutputNode("Output", constant);
        EXPECT_EQ(scaleOf(b).builds, builds) << "nothing moves before the guard ends";
    }
    EXPECT_EQ(scaleOf(b).builds, builds + 1);
    EXPECT_EQ(evaluate(b->getOutput("Output")), 8.0);
}
