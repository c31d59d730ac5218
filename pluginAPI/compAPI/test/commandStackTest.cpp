// Who hears of the command stack's steps, and what replaying forbids.
#include "compTestTools.h"
#include "piUndoGuard.h"
#include "piUndoRedoControllerHelper.h"
#include "piValueChangeInterface.h"

using namespace Qv;
using namespace Qv::CompTest;

namespace {

class FollowingController : public ScaleController,
                            public PiUndoRedoControllerHelper,
                            public PiValueChangeInterface {
public:
    void commandProcessed(PiCommandStack::State state) override { states.push_back(state); }
    // A reaction that writes: refused while a step replays.
    void valueChanged(PiNodeEvent::ValueChanged const& event) override {
        if (writeOnReplay && event.getName() == "Gain")
            getNode()->getValue("Label")->setData(std::string("changed"));
    }
    void endOfOutermostGuard() override { ++guardsClosed; }

    std::vector<PiCommandStack::State> states;
    int guardsClosed = 0;
    bool writeOnReplay = false;
};

struct Heard : CbHandler<PiGraphEvent const> {
    std::vector<std::string> labels;
    void call(PiGraphEvent const& event) override {
        if (auto const* processed = dynamic_cast<PiGraphEvent::CommandProcessed const*>(&event))
            labels.push_back(std::to_string(processed->getState()) + " " + processed->getLabel());
    }
};

struct Replayed : PiUndoGuardCbHandler {
    explicit Replayed(std::vector<PiCommandStack::State>& seen) : seen(seen) {}
    void call(PiCommandStack::State const& state) override { seen.push_back(state); }
    std::vector<PiCommandStack::State>& seen;
};

} // namespace

TEST_F(GraphTest, StepsAreToldToControllersListenersAndTheirGuardsHandlers) {
    ToolSpec spec = scaleTool("Following");
    spec.createController = [] { return std::make_unique<FollowingController>(); };
    ScopedTool tool(spec);
    RCShdPtr<PiGraph> graph(new PiGraph);
    RCShdPtr<PiNode> node = graph->createNode("Following", "F");
    auto& controller = *node->getInterface<FollowingController>();
    controller.states.clear(); // the node's own step
    Heard heard;
    graph->addCallback(&heard);
    std::vector<PiCommandStack::State> replayed;
    {
        PiUndoRedoControllerHelper::UndoGuard outer(controller, "Set Both");
        PiUndoGuard inner(graph->getCommandStack(), "ignored inside", PiExecParam::NOTIFY,
                          std::make_unique<Replayed>(replayed));
        node->getInput("Value")->setConstantValue(1.0);
        node->getInput("Gain")->setConstantValue(2.0);
    }
    EXPECT_EQ(controller.guardsClosed, 1);
    graph->getCommandStack().undo();
    graph->getCommandStack().redo();
    {
        PiUndoGuard silent(graph->getCommandStack(), "Quiet", PiExecParam::SILENT);
        node->getValue("Label")->setData(std::string("q"));
    }
    graph->removeCallback(&heard);
    EXPECT_EQ(heard.labels, (std::vector<std::string>{"0 Set Both", "1 Set Both", "2 Set Both"}));
    EXPECT_EQ(controller.states, (std::vector<PiCommandStack::State>{
                                     PiCommandStack::DONE, PiCommandStack::UNDONE, PiCommandStack::REDONE}));
    EXPECT_EQ(replayed, (std::vector<PiCommandStack::State>{PiCommandStack::UNDONE, PiCommandStack::REDONE}));

    controller.writeOnReplay = true;
    {
        PiUndoGuard guard(graph->getCommandStack(), "Gain and Label");
        node->getInput("Gain")->setConstantValue(3.0); // outside a replay the reaction may write
    }
    EXPECT_EQ(node->getValue("Label")->getData(), PiVariant(std::string("changed")));
    try {
        graph->getCommandStack().undo();
        FAIL() << "a change during undo was allowed";
    } catch (AssertionsEx::ExAssertionFailed const& error) {
        EXPECT_EQ(error.getReason(), "!isUndoRedoOngoing()");
    }
    EXPECT_FALSE(graph->getCommandStack().isUndoRedoOngoing());
}

TEST_F(GraphTest, ChangesUnderNoLogAreMadeButNotLogged) {
    ScopedTool tool(scaleTool());
    RCShdPtr<PiGraph> graph(new PiGraph);
    RCShdPtr<PiNode> node = graph->createNode("Scale", "S");
    std::size_t steps = graph->getCommandStack().getNbUndoSteps();
    {
        PiUndoGuardNoLog noLog;
        node->getInput("Value")->setConstantValue(3.0);
    }
    {
        PiUndoGuardNoLog notReally(false);
        node->getInput("Value")->setConstantValue(4.0);
    }
    EXPECT_EQ(graph->getCommandStack().getNbUndoSteps(), steps + 1);
    graph->getCommandStack().undo();
    EXPECT_EQ(evaluate(node->getOutput("Output"), 0.0), 3.0) << "Gain 1 times the unlogged 3";
}
