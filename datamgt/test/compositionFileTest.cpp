// Compositions on disk: what is saved comes back, byte for byte; nodes of
// missing tools keep everything; a bad file is one error naming its line.
#include "compTestTools.h"
#include "omCompositionFile.h"
#include "omEx.h"
#include "omGraphUtil.h"
#include "osFile.h"
#include "piGroupInterface.h"
#include "piGroupTopologyInterface.h"
#include "piProcNodeFactory.h"

#include <filesystem>

using namespace Qv;
using namespace Qv::CompTest;

namespace {

// What the placeholders of missing tools do: keep the node, give neutral values.
class PlaceholderController : public PiToolTopologyInterface,
                              public PiToolInterface,
                              public virtual PiNodeController {
public:
    explicit PlaceholderController(std::string kind) : kind(std::move(kind)) {}
    void createProcNodes(OutputPublisher& publisher) override {
        for (RCShdPtr<PiOutput> const& output : getNode()->getOutputs())
            publisher.publish(output, PiProcNodeFactory::createGeneratorNode(output->getType()));
    }
    void nodeLoaded() override { ++loaded; }
    std::string kind;
    int loaded = 0;
};

class GroupPlaceholder : public PiGroupTopologyInterface,
                         public PiGroupInterface,
                         public virtual PiNodeController {};

class CompositionFile : public GraphTest {
protected:
    void SetUp() override {
        OmGraphUtil::registerMissingToolNodeCtrlFactory(
            []() -> OPtrRet<PiNodeController> { return std::make_unique<PlaceholderController>("missing"); });
        OmGraphUtil::registerBrokenToolNodeCtrlFactory(
            []() -> OPtrRet<PiNodeController> { return std::make_unique<PlaceholderController>("broken"); });
        OmGraphUtil::registerMissingSuperToolNodeCtrlFactory(
            []() -> OPtrRet<PiNodeController> { return std::make_unique<GroupPlaceholder>(); });
        std::filesystem::create_directories(_dir);
    }
    void TearDown() override { std::filesystem::remove_all(_dir); }

    std::string path(std::string const& name) const { return (_dir / name).string(); }
    std::string read(std::string const& name) const { return OsFile(path(name)).readText(); }
    std::string write(std::string const& name, std::string const& text) const {
        OsFile(path(name)).writeAtomically(text);
        return path(name);
    }
    std::string saveAs(PiGraph& graph, std::string const& name) const {
        OmCompositionFile::save(graph, path(name));
        return read(name);
    }

    ScopedTool _scale{scaleTool()};
    std::filesystem::path _dir = std::filesystem::temp_directory_path() /
                                 ("qv-composition-" + std::to_string(::getpid()) + "-" +
                                  ::testing::UnitTest::GetInstance()->current_test_info()->name());
};

// Two nodes, one driving the other, keyframes, a dynamic input, a stored text
// with characters XML must escape, and a group with a graph inside.
RCShdPtr<PiGraph> makeComposition(std::string const& groupTool) {
    RCShdPtr<PiGraph> graph(new PiGraph);
    RCShdPtr<PiNode> a = graph->createNode("Scale", "A");
    RCShdPtr<PiNode> b = graph->createNode("Scale", "B");
    a->getInput("Value")->setConstantValue(1.0 / 3.0);
    PiValueInterfaceBase& gain = a->getInput("Gain")->getValueInterface();
    gain.setKeyframeVariant(0.0, 0.5);
    gain.setKeyframeVariant(2.5, 4.0);
    a->getValue("Label")->setData(std::string("<a & \"b\">\n\tend"));
    b->addDynamicInput("Extra1", PiSocketType::DOUBLE, SINGLE)->setConstantValue(-2e-9);
    graph->connect(a->getOutput("Output"), b->getInput("Value"));
    RCShdPtr<PiNode> g = graph->createNode(groupTool, "G");
    RCShdPtr<PiGraph> inner = g->getInnerGraph();
    RCShdPtr<PiNode> s = inner->createNode("Scale", "Inner");
    inner->connect(inner->getNode("In")->getOutput("Output"), s->getInput("Value"));
    inner->connect(s->getOutput("Output"), inner->getNode("Out")->getInput("Input"));
    graph->connect(b->getOutput("Output"), g->getInput("In"));
    s->getInput("Gain")->setConstantValue(3.0);
    return graph;
}

} // namespace

TEST_F(CompositionFile, SavingWhatWasLoadedGivesTheSameBytes) {
    ScopedTool group(groupTool("Group"));
    RCShdPtr<PiGraph> graph = makeComposition("Group");
    double const before = evaluate(graph->getNode("G")->getOutput("Out"), 1.0);
    std::string const first = saveAs(*graph, "first.qvc");

    RCShdPtr<PiGraph> loaded = OmCompositionFile::load(path("first.qvc"));
    EXPECT_EQ(saveAs(*loaded, "second.qvc"), first);
    EXPECT_EQ(evaluate(loaded->getNode("G")->getOutput("Out"), 1.0), before);
    EXPECT_EQ(loaded->getNode("A")->getValue("Label")->getData(),
              PiVariant(std::string("<a & \"b\">\n\tend")));
    EXPECT_FALSE(loaded->getCommandStack().canUndo()) << "reading is not an edit";
    RCShdPtr<PiNode> b = loaded->getNode("B");
    EXPECT_EQ(scaleOf(b).loaded, 1);
    EXPECT_EQ(scaleOf(b).created, 0) << "a loaded node is not created";
    EXPECT_TRUE(b->getInput("Extra1")->isDynamic());
    EXPECT_EQ(first.find("<?xml"), 0u);
    EXPECT_TRUE(std::filesystem::directory_iterator(_dir) != std::filesystem::directory_iterator());
    for (auto const& entry : std::filesystem::directory_iterator(_dir))
        EXPECT_EQ(entry.path().extension(), ".qvc") << "no temporary file is left behind";
}

TEST_F(CompositionFile, NodesOfMissingToolsKeepEverySocketAndValue) {
    std::string first;
    {
        ScopedTool temporary(scaleTool("Temporary"));
        ScopedTool group(groupTool("Gone Group"));
        RCShdPtr<PiGraph> graph = makeComposition("Gone Group");
        RCShdPtr<PiNode> t = graph->createNode("Temporary", "T");
        t->getInput("Gain")->setConstantValue(2.5);
        graph->connect(graph->getNode("A")->getOutput("Output"), t->getInput("Value"));
        graph->connect(t->getOutput("Output"), graph->getNode("B")->getInput("Gain"));
        first = saveAs(*graph, "first.qvc");
    }
    RCShdPtr<PiGraph> loaded = OmCompositionFile::load(path("first.qvc"));
    RCShdPtr<PiNode> t = loaded->getNode("T");
    auto* placeholder = t->getInterface<PlaceholderController>();
    ASSERT_NE(placeholder, nullptr);
    EXPECT_EQ(placeholder->kind, "missing");
    EXPECT_EQ(placeholder->loaded, 1);
    EXPECT_EQ(t->getToolName(), "Ostrand/Temporary");
    EXPECT_EQ(t->getInput("Gain")->getValueAt(0), PiVariant(2.5));
    EXPECT_EQ(evaluate(t->getOutput("Output")), 0.0) << "a neutral value";
    EXPECT_NE(loaded->getNode("G")->getInterface<GroupPlaceholder>(), nullptr);
    EXPECT_EQ(saveAs(*loaded, "second.qvc"), first);
}

TEST_F(CompositionFile, AStoredFormTheToolCannotReadGoesToTheBrokenToolFactory) {
    write("newer.qvc", "<composition version=\"1\">\n"
                       "  <node name=\"S\" tool=\"Ostrand/Scale\" schema=\"9\">\n"
                       "    <input name=\"Value\" type=\"double\"><constant value=\"4\"/></input>\n"
                       "    <input name=\"Later\" type=\"integer\"><constant value=\"2\"/></input>\n"
                       "    <output name=\"Output\" type=\"double\"/>\n"
                       "  </node>\n"
                       "</composition>\n");
    RCShdPtr<PiGraph> graph = OmCompositionFile::load(path("newer.qvc"));
    RCShdPtr<PiNode> node = graph->getNode("S");
    ASSERT_NE(node->getInterface<PlaceholderController>(), nullptr);
    EXPECT_EQ(node->getInterface<PlaceholderController>()->kind, "broken");
    EXPECT_EQ(node->getSchemaNb(), 9);
    EXPECT_EQ(node->getInput("Later")->getValueAt(0), PiVariant(2));
}

TEST_F(CompositionFile, ABadFileIsOneErrorNamingTheFileAndLine) {
    std::string const node = "  <node name=\"S\" tool=\"Ostrand/Scale\" schema=\"1\">\n";
    struct Case {
        char const* what;
        std::string text;
        char const* where;
        char const* why;
    };
    Case const cases[] = {
        {"not XML", "<composition version=\"1\">\n  <node>\n</composition>\n", "line 3", "XML syntax error"},
        {"another root", "<?xml version=\"1.0\"?>\n<scene/>\n", "line 2", "<scene> is not a composition"},
        {"a later format", "<composition version=\"2\"/>\n", "line 1", "format version 2"},
        {"a node without tool",
         "<composition version=\"1\">\n  <node name=\"S\" schema=\"1\"/>\n</composition>\n", "line 2",
         "no attribute 'tool'"},
        {"a value of the wrong type",
         "<composition version=\"1\">\n" + node +
             "    <input name=\"Gain\" type=\"double\">\n      <constant value=\"abc\"/>\n    </input>\n  "
             "</node>\n</composition>\n",
         "line 4", "'abc' is not a value of type double"},
        {"two nodes of one name",
         "<composition version=\"1\">\n" + node + "  </node>\n" + node + "  </node>\n</composition>\n",
         "line 4", "already exists"},
        {"a connection to nobody",
         "<composition version=\"1\">\n" + node +
             "  </node>\n  <connection from=\"S.Output\" to=\"X.Value\"/>\n</composition>\n",
         "line 4", "no node named 'X'"},
        {"a loop",
         "<composition version=\"1\">\n" + node +
             "  </node>\n  <connection from=\"S.Output\" to=\"S.Gain\"/>\n</composition>\n",
         "line 4", "loop"},
        {"an unknown element", "<composition version=\"1\">\n  <layer/>\n</composition>\n", "line 2",
         "unexpected <layer>"},
    };
    for (Case const& c : cases) {
        std::string file = write("bad.qvc", c.text);
        try {
            OmCompositionFile::load(file);
            ADD_FAILURE() << c.what << ": loaded";
        } catch (OmEx::ExBadComposition const& error) {
            std::string const& reason = error.getReason();
            EXPECT_NE(reason.find(file), std::string::npos) << c.what << ": " << reason;
            EXPECT_NE(reason.find(c.where), std::string::npos) << c.what << ": " << reason;
            EXPECT_NE(reason.find(c.why), std::string::npos) << c.what << ": " << reason;
        }
    }
    EXPECT_THROW(OmCompositionFile::load(path("absent.qvc")), OmEx::ExBadComposition);
}

TEST_F(CompositionFile, WithoutAPlaceholderAMissingToolIsAnError) {
    OmGraphUtil::registerMissingToolNodeCtrlFactory(nullptr);
    write("missing.qvc", "<composition version=\"1\">\n"
                         "  <node name=\"X\" tool=\"Elsewhere/Thing\" schema=\"1\"/>\n"
                         "</composition>\n");
    try {
        OmCompositionFile::load(path("missing.qvc"));
        FAIL() << "loaded";
    } catch (OmEx::ExBadComposition const& error) {
        EXPECT_NE(error.getReason().find("line 2: node 'X': tool 'Elsewhere/Thing' is not installed"),
                  std::string::npos)
            << error.getReason();
    }
}

TEST_F(CompositionFile, ColourChannelsAndTimesComeBackAsTheyWere) {
    ScopedTool paint(std::make_unique<PaintTool>());
    RCShdPtr<PiGraph> graph(new PiGraph);
    RCShdPtr<PiNode> p = graph->createNode(paint.getName(), "P");
    RCShdPtr<PiInput> tint = p->getInput("Tint");
    tint->setConstantValue(std::vector<double>{0.25, 0.5, 1.5});
    tint->getChannel("Red")->getValueInterface().setKeyframeVariant(1.0, 0.1);
    tint->getChannel("Red")->getValueInterface().setKeyframeVariant(3.0, 0.9);
    p->getInput("Mark")->setConstantValue(DtTime(DtTimeIndex(1001), Rational(30000, 1001)));
    RCShdPtr<PiNode> a = graph->createNode("Scale", "A");
    graph->connect(a->getOutput("Output"), tint->getChannel("Blue"));
    std::string const first = saveAs(*graph, "first.qvc");
    EXPECT_NE(first.find("<channel name=\"Red\">"), std::string::npos);
    EXPECT_NE(first.find("value=\"1001@30000/1001\""), std::string::npos);
    EXPECT_NE(first.find("to=\"P.Tint.Blue\""), std::string::npos);

    RCShdPtr<PiGraph> loaded = OmCompositionFile::load(path("first.qvc"));
    EXPECT_EQ(saveAs(*loaded, "second.qvc"), first);
    RCShdPtr<PiInput> back = loaded->getNode("P")->getInput("Tint");
    EXPECT_EQ(back->getChannel("Red")->getValueInterface().getKeyframeVariants().size(), 2u);
    EXPECT_FALSE(back->getChannel("Green")->getValueInterface().isAnimated()) << "keyframes stay per channel";
    EXPECT_TRUE(back->getChannel("Blue")->isDriven());
    EXPECT_EQ(loaded->getNode("P")->getInput("Mark")->getValueAt(0.0),
              PiVariant(DtTime(DtTimeIndex(1001), Rational(30000, 1001))));
}

TEST_F(CompositionFile, AColourSavedAsThreeNumberInputsLoadsAsOneColour) {
    ScopedTool paint(std::make_unique<PaintTool>());
    std::string const file = write("old.qvc", R"(<?xml version="1.0" encoding="UTF-8"?>
<composition version="1">
  <node name="P" tool=")" + paint.getName() + R"(" schema="1">
    <input name="Tint Red" type="double">
      <constant value="0.25" />
      <keyframe time="2" value="1" />
    </input>
    <input name="Tint Green" type="double">
      <constant value="0.5" />
    </input>
    <input name="Tint Blue" type="double">
      <constant value="1.5" />
    </input>
    <output name="Output" type="color" />
  </node>
  <node name="A" tool="Ostrand/Scale" schema="1">
    <output name="Output" type="double" />
  </node>
  <connection from="A.Output" to="P.Tint Green" />
</composition>
)");
    RCShdPtr<PiGraph> graph = OmCompositionFile::load(file);
    RCShdPtr<PiNode> p = graph->getNode("P");
    ASSERT_TRUE(p->getTool()) << "the node is the tool's, not a placeholder";
    RCShdPtr<PiInput> tint = p->getInput("Tint");
    EXPECT_EQ(tint->getChannel("Red")->getValueInterface().getKeyframeVariants().size(), 1u);
    EXPECT_EQ(tint->getValueAt(0.0), PiVariant(std::vector<double>{1.0, 0.5, 1.5}))
        << "red's one keyframe holds at every time";
    using ColourOutput = PiTypedAnimSocket<CoRgbColorTyped<float>, PiOutput>;
    EXPECT_EQ(ColourOutput(p->getOutput("Output")).getValue(0.0), (CoRgbColorTyped<float>{1.0f, 0.0f, 1.5f}))
        << "green is driven by A, whose output is 0";
    EXPECT_TRUE(tint->getChannel("Green")->isDriven());
    std::string const saved = saveAs(*graph, "new.qvc");
    EXPECT_NE(saved.find("<input name=\"Tint\" type=\"color\">"), std::string::npos);
    EXPECT_EQ(saved.find("Tint Red"), std::string::npos);
}
