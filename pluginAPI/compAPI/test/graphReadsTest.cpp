// What the graph offers the expressions on parameters: dynamic inputs that
// read a parameter's value or a node inside a group, and the events that
// tell listeners of renames and of a graph closing.
#include "compTestTools.h"
#include "piEx.h"
#include "piGraphEvent.h"
#include "piProcBuilder.h"

using namespace Qv;
using namespace Qv::CompTest;

namespace {

class GraphReads : public GraphTest {
protected:
    GraphReads() {
        _graph->createNode("Scale", "A")->getInput("Value")->setConstantValue(4.0);
        _graph->createNode("Scale", "B");
        _graph->createNode("Group", "G")
            ->getInnerGraph()
            ->createNode("Scale", "N")
            ->getInput("Value")
            ->setConstantValue(9.0);
    }
    // Each dynamic input of B's, its result on B's output through Value.
    RCShdPtr<PiInput> addReader(std::string const& name) {
        return _graph->getNode("B")->addDynamicInput("Extra" + name, PiSocketType::DOUBLE, SINGLE);
    }
    static double evaluate(RCShdPtr<PiInput> const& input) {
        return PiTypedAnimSocket<double, PiInput>(input).getValue(0.0);
    }
    static RCShdPtr<PiOutput> valueOutput(RCShdPtr<PiInput> const& input) {
        return input->getValueNode()->getOutput(PiNode::getValueNodeOutputName(), true);
    }

    ScopedTool _scale{scaleTool()};
    ScopedTool _group{groupTool()};
    RCShdPtr<PiGraph> _graph{new PiGraph};
};

// Records the graph events it hears.
class Recorder : public CbHandler<PiGraphEvent const> {
public:
    void call(PiGraphEvent const& event) override {
        if (auto const* renamed = dynamic_cast<PiGraphEvent::NodeRenamed const*>(&event))
            heard.push_back("renamed " + renamed->getOldName() + " to " + renamed->getNode().getName());
        else if (auto const* closing = dynamic_cast<PiGraphEvent::GraphClosing const*>(&event))
            heard.push_back("closing " + closing->getUuid().toString());
    }
    std::vector<std::string> heard;
};

} // namespace

TEST_F(GraphReads, ADynamicInputMayReadAParameterAndInsideAGroup) {
    RCShdPtr<PiInput> reader = addReader("1");
    RCShdPtr<PiInput> declared = _graph->getNode("B")->getInput("Gain");
    RCShdPtr<PiOutput> const aValue = valueOutput(_graph->getNode("A")->getInput("Value"));
    RCShdPtr<PiOutput> const inner = _graph->getNode("G")->getInnerGraph()->getNode("N")->getOutput("Output");

    EXPECT_NO_THROW(_graph->connect(aValue, reader));
    EXPECT_EQ(evaluate(reader), 4.0);
    EXPECT_THROW(_graph->connect(aValue, declared), PiEx::ExConnectionRefused)
        << "only a reader reads a value";

    RCShdPtr<PiInput> deep = addReader("2");
    EXPECT_NO_THROW(_graph->connect(inner, deep));
    EXPECT_EQ(evaluate(deep), 9.0);
    EXPECT_THROW(_graph->connect(inner, declared), PiEx::ExConnectionRefused);

    // What reads a node's parameter lets go of it when the node goes.
    _graph->removeNode(_graph->getNode("A"));
    EXPECT_FALSE(reader->isDriven());
    EXPECT_TRUE(PiProcBuilder::isDownstream(*_graph->getNode("B"), *_graph->getNode("B")));
}

TEST_F(GraphReads, RenamesAndClosingAreTold) {
    Recorder recorder;
    Uuid uuid;
    {
        RCShdPtr<PiGraph> graph(new PiGraph);
        uuid = graph->getUuid();
        EXPECT_FALSE(uuid.isNil());
        RCShdPtr<PiNode> group = graph->createNode("Group", "G");
        EXPECT_EQ(group->getInnerGraph()->getUuid(), uuid) << "a group's graph is its root's";
        RCShdPtr<PiNode> inner = group->getInnerGraph()->createNode("Scale", "N");
        graph->addCallback(&recorder);
        group->getInnerGraph()->renameNode(inner, "M");
        graph->getCommandStack().undo();
        graph->getCommandStack().redo();
    }
    std::vector<std::string> const expected{"renamed N to M", "renamed M to N", "renamed N to M",
                                            "closing " + uuid.toString()};
    EXPECT_EQ(recorder.heard, expected);
}
