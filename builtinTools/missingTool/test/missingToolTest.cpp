// Nodes whose tools this installation lacks, read from real composition
// files: kept as they were, frozen, neutral, and saved back byte for byte.
#include "btMissingToolNodeController.h"
#include "inInitMgr.h"
#include "msgServer.h"
#include "omCompositionFile.h"
#include "piEx.h"
#include "piImageSocket.h"
#include "piRangeInputPolicy.h"
#include "piSchematicInterface.h"
#include "piToolInterface.h"
#include "piTypedAnimSocket.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

using namespace Qv;

namespace {

std::string const HEADER = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<composition version=\"1\">\n";
std::string const FOOTER = "</composition>\n";

// A node of a tool no installation has, with a socket of every kind.
std::string const MISSING_NODE = R"(  <node name="M" tool="Ostrand/Nowhere" schema="3">
    <input name="Gain" type="double">
      <constant value="2.5" />
      <keyframe time="1" value="4" />
    </input>
    <input name="Count" type="integer">
      <constant value="7" />
    </input>
    <input name="On" type="boolean">
      <constant value="true" />
    </input>
    <input name="Label" type="string">
      <constant value="a &amp; b" />
    </input>
    <input name="Mark" type="time">
      <constant value="12@24" />
    </input>
    <input name="Tint" type="color">
      <channel name="Red">
        <constant value="0.5" />
        <keyframe time="1" value="1" />
      </channel>
      <channel name="Green">
        <constant value="0" />
      </channel>
      <channel name="Blue">
        <constant value="0.25" />
      </channel>
    </input>
    <input name="Source" type="image" />
    <output name="Value" type="double" />
    <output name="Image" type="image" />
    <value name="Mode" type="int" value="2" />
  </node>
)";

// An installed tool, saved by a later version of it.
std::string const BROKEN_NODE = R"(  <node name="M" tool="Ostrand/Value Source" schema="9">
    <input name="Value" type="double">
      <constant value="0.75" />
    </input>
    <input name="Later" type="integer">
      <constant value="2" />
    </input>
    <output name="Value" type="double" />
    <output name="Image" type="image" />
  </node>
)";

// A group of a super tool no installation has, with a node inside.
std::string const MISSING_GROUP = R"(  <node name="M" tool="Ostrand/Far Away" schema="2">
    <input name="Gain" type="double">
      <constant value="2.5" />
    </input>
    <output name="Value" type="double" />
    <output name="Image" type="image" />
    <graph>
      <node name="V" tool="Ostrand/Value Source" schema="1">
        <input name="Value" type="double">
          <constant value="0.5" />
        </input>
        <output name="Output" type="double" />
      </node>
      <connection from="Gain.Output" to="V.Value" />
      <connection from="V.Output" to="Value.Input" />
    </graph>
  </node>
)";

class MissingTool : public ::testing::Test {
protected:
    static void SetUpTestSuite() { InInitMgr::getInstance().initializeAll(); }

    MissingTool()
        : _sink([this](MsgSeverity severity, std::string const& text) {
              _messages.push_back({severity, text});
          }) {
        std::filesystem::create_directories(_dir);
    }
    ~MissingTool() override { std::filesystem::remove_all(_dir); }

    OsFilePath write(std::string const& name, std::string const& text) const {
        std::ofstream(_dir / name) << text;
        return OsFilePath((_dir / name).string());
    }
    std::string read(std::string const& name) const {
        std::ostringstream text;
        text << std::ifstream(_dir / name).rdbuf();
        return text.str();
    }
    RCShdPtr<PiGraph> load(std::string const& nodes) {
        return OmCompositionFile::load(write("in.qvc", HEADER + nodes + FOOTER));
    }

    std::filesystem::path const _dir =
        std::filesystem::temp_directory_path() / ("missingToolTest-" + std::to_string(::getpid()));
    std::vector<std::pair<MsgSeverity, std::string>> _messages;
    MsgSinkGuard _sink;
};

} // namespace

TEST_F(MissingTool, KeepsTheNodeFrozenNeutralAndWhole) {
    struct Case {
        char const* what;
        std::string node;
        std::string words;
    };
    Case const cases[] = {
        {"a tool that is not installed", MISSING_NODE,
         "M (Ostrand/Nowhere) needs a tool that is not installed (schema 3)"},
        {"a stored form the tool cannot read", BROKEN_NODE, "M (Ostrand/Value Source) was saved in a form"},
        {"a super tool that is not installed", MISSING_GROUP,
         "M (Ostrand/Far Away) needs a tool that is not installed (schema 2)"},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.what);
        _messages.clear();
        RCShdPtr<PiGraph> graph = load(c.node);
        ASSERT_EQ(_messages.size(), 1u) << "one warning for the node";
        EXPECT_EQ(_messages[0].first, MsgSeverity::Warning);
        EXPECT_NE(_messages[0].second.find(c.words), std::string::npos) << _messages[0].second;

        RCShdPtr<PiNode> node = graph->getNode("M");
        using DoubleOutput = PiTypedAnimSocket<double, PiOutput>;
        EXPECT_EQ(DoubleOutput(node->getOutput("Value")).getValue(0.0), 0.0);
        EXPECT_FALSE(PiImageSocket<PiOutput>(node->getOutput("Image")).getValue(0.0, 0).isValid())
            << "an image without pixels";

        for (RCShdPtr<PiInput> const& input : node->getInputs()) {
            SCOPED_TRACE(input->getName());
            EXPECT_FALSE(input->getPolicy()->canAnimate());
            EXPECT_FALSE(input->getPolicy()->canSetValue(PiVariantUtil::getZero(input->getType())));
            if (!input->hasValueNode())
                continue;
            PiVariant const before = input->getValueAt(0.0);
            EXPECT_THROW(input->setConstantValue(PiVariantUtil::getZero(input->getType())),
                         PiEx::ExValueRefused);
            node->getInterface<PiToolInterface>()->reset(input);
            EXPECT_EQ(input->getValueAt(0.0), before) << "a reset leaves the value as loaded";
        }

        OmCompositionFile::save(*graph, OsFilePath((_dir / "out.qvc").string()));
        EXPECT_EQ(read("out.qvc"), HEADER + c.node + FOOTER);
        _messages.clear();
        OmCompositionFile::load(OsFilePath((_dir / "out.qvc").string()));
        EXPECT_EQ(_messages.size(), 1u) << "loading again warns again";
    }
}

TEST_F(MissingTool, ANodeWithoutSocketsStillWarnsOnce) {
    RCShdPtr<PiGraph> graph = load("  <node name=\"E\" tool=\"Ostrand/Empty\" schema=\"1\" />\n");
    ASSERT_EQ(_messages.size(), 1u);
    EXPECT_NE(_messages[0].second.find("E (Ostrand/Empty)"), std::string::npos);
}

TEST_F(MissingTool, AnExplicitPolicyIsKept) {
    OPtrRet<PiNodeController> controller = BtMissingToolNodeController::createMissing();
    auto* tool = dynamic_cast<PiToolInterface*>(controller.get());
    ASSERT_NE(tool, nullptr);
    RCShdPtr<PiInputPolicy const> const range =
        PiRangeInputPolicy<double>::create(0.0, 10.0, 1.0, true, false);
    tool->addInputPolicy("Gain", range);
    PiNodeSpec spec;
    spec.name = "M";
    spec.toolName = "Ostrand/Nowhere";
    spec.schemaNb = 1;
    spec.controller = std::move(controller);
    spec.inputs.push_back({"Gain", PiSocketType::DOUBLE, SINGLE, false, std::nullopt});
    spec.inputs.push_back({"Bias", PiSocketType::DOUBLE, SINGLE, false, std::nullopt});
    RCShdPtr<PiGraph> graph(new PiGraph);
    RCShdPtr<PiNode> node = graph->restoreNode(std::move(spec));
    graph->notifyLoaded();
    EXPECT_EQ(node->getInput("Gain")->getPolicy().get(), range.get());
    EXPECT_NO_THROW(node->getInput("Gain")->setConstantValue(5.0));
    EXPECT_THROW(node->getInput("Bias")->setConstantValue(5.0), PiEx::ExValueRefused);
}

TEST_F(MissingTool, DrawsItselfAsMissingInBothOrientations) {
    RCShdPtr<PiGraph> graph = load(MISSING_NODE);
    auto* schematic = graph->getNode("M")->getInterface<PiSchematicInterface>();
    ASSERT_NE(schematic, nullptr);
    EXPECT_NE(schematic->getNodeXmlDescription(PiSchematicInterface::HORIZONTAL).find("\"horizontal\""),
              std::string::npos);
    EXPECT_NE(schematic->getNodeXmlDescription(PiSchematicInterface::VERTICAL).find("\"vertical\""),
              std::string::npos);
}
