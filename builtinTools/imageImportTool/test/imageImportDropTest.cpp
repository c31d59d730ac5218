// Files dropped on an "Image Import" node: a file stands for its whole
// sequence, the new path is one undo step and a refusal none; and the
// reader's panel factories, set only while packages initialise and cleared
// only while they finalise.
#include "../../../base/test/baseTestHelpers.h"
#include "assertions.h"
#include "btImageImportController.h"
#include "btImageReaderController.h"
#include "btSequencePathParser.h"
#include "ffImageWriteUtil.h"
#include "inInitMgr.h"
#include "inPackageInit.h"
#include "piCommandStack.h"
#include "piFileDndImp.h"
#include "piFileSequenceDnd.h"
#include "piGraph.h"
#include "piNode.h"
#include "piValue.h"

#include <functional>

using namespace Qv;
using namespace Qv::TestHelpers;

namespace {

class ImageImportDrop : public TempDirTest {
protected:
    static void SetUpTestSuite() { InInitMgr::getInstance().initializeAll(); }

    // Frames name.NNNN.exr, 4 by 2, for each number.
    void writeFrames(std::string const& name, std::vector<int> const& numbers) {
        IxTile const tile(IxPixelFormat(IxPixelFormat::RGB, IxPixelFormat::FLOAT16), {0, 4, 0, 2});
        for (int number : numbers) {
            char digits[8];
            std::snprintf(digits, sizeof digits, "%04d", number);
            FfImageWriteUtil::writeTile(path(name + "." + digits + ".exr"), tile);
        }
    }
    std::string at(std::string const& relative) const { return path(relative).toString(); }
    static BtImageImportController& import(RCShdPtr<PiNode> const& node) {
        return *node->getInterface<BtImageImportController>();
    }
    PiCommandStack& stack() { return _graph->getCommandStack(); }

    RCShdPtr<PiGraph> _graph{new PiGraph};
};

TEST_F(ImageImportDrop, eachDroppedFileBecomesItsSequenceListedOnce) {
    writeFrames("p", {1, 2, 3, 5});
    writeFrames("q", {4});
    // A resolver that knows no sequence for the file "loose".
    auto const resolve = [](std::string const& file) {
        return file.ends_with("loose") ? std::string() : BtSequencePathParser::resolveFullSequencePath(file);
    };
    struct Case {
        std::vector<std::string> dropped;
        std::vector<std::string> expected;
    };
    Case const cases[] = {
        {{"p.0002.exr"}, {"p.[0001:0003,0005].exr"}},
        {{"q.0004.exr", "p.0005.exr", "p.0001.exr"}, {"q.[0004].exr", "p.[0001:0003,0005].exr"}},
        {{"loose", "q.0004.exr", "loose"}, {"loose", "q.[0004].exr"}},
        {{}, {}},
    };
    for (Case const& c : cases) {
        PiFileDndImp drop;
        for (std::string const& file : c.dropped)
            drop.addFile(at(file));
        SCOPED_TRACE(testing::PrintToString(c.dropped));
        PiOutcome const outcome = PiFileSequenceDnd(drop, resolve).getOutcome();
        ASSERT_EQ(outcome.getFileItems().size(), c.expected.size());
        for (std::size_t i = 0; i < c.expected.size(); ++i)
            EXPECT_EQ(outcome.getFileItems()[i].getFile(), at(c.expected[i]));
    }
}

TEST_F(ImageImportDrop, aDropChangesThePathInOneStepThatUndoTakesBack) {
    writeFrames("p", {1, 2, 3});
    std::string const sequence = at("p.[0001:0003].exr");
    struct Case {
        char const* what;
        std::function<bool(BtImageImportController&)> drop;
    };
    Case const cases[] = {
        {"one file", [&](auto& node) { return node.setFileDnd(PiFileDndImp({at("p.0002.exr")})); }},
        {"two files of the sequence",
         [&](auto& node) {
             return node.setFileDnd(PiFileDndImp({at("p.0003.exr"), at("p.0001.exr")}));
         }},
        {"a tool's outcome",
         [&](auto& node) {
             PiOutcome outcome;
             outcome.addFile(sequence);
             return node.canAccept(outcome) && node.accept(outcome);
         }},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.what);
        RCShdPtr<PiNode> const node = _graph->createNode("Image Import");
        std::string const defaultName = node->getName();
        std::size_t const steps = stack().getNbUndoSteps();
        ASSERT_TRUE(c.drop(import(node))) << import(node).getErrorString();
        EXPECT_EQ(import(node).getErrorString(), "");
        EXPECT_EQ(import(node).getReader().getSequenceString(), sequence);
        EXPECT_EQ(std::get<std::string>(node->getValue("Sequence", true)->getData()), sequence);
        EXPECT_EQ(node->getName().substr(0, 1), "p");
        ASSERT_EQ(stack().getNbUndoSteps(), steps + 1);
        EXPECT_EQ(stack().getUndoLabel(), "Change Path");

        stack().undo();
        EXPECT_EQ(node->getName(), defaultName);
        EXPECT_EQ(import(node).getReader().getSequenceString(), "");
        EXPECT_TRUE(import(node).getReader().getImageSequence().isNull());
        stack().redo();
        EXPECT_EQ(import(node).getReader().getSequenceString(), sequence);
    }
}

TEST_F(ImageImportDrop, aRefusedDropLeavesTheNodeAndNoStep) {
    writeFrames("p", {1, 2});
    writeFrames("q", {1});
    writeFile("notes.0001.xyz", "not an image");
    RCShdPtr<PiNode> const node = _graph->createNode("Image Import");
    BtImageImportController& footage = import(node);
    ASSERT_TRUE(footage.setFileDnd(PiFileDndImp({at("p.0001.exr")})));
    std::string const kept = footage.getReader().getSequenceString();
    std::string const name = node->getName();
    std::size_t const steps = stack().getNbUndoSteps();
    struct Case {
        std::vector<std::string> dropped;
        std::string error;
    };
    Case const cases[] = {
        {{"notes.0001.xyz"}, "Format of specified files is not supported"},
        {{}, "One image sequence can be dropped here, not 0."},
        {{"q.0001.exr", "p.0002.exr"}, "One image sequence can be dropped here, not 2."},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.dropped));
        PiFileDndImp drop;
        for (std::string const& file : c.dropped)
            drop.addFile(at(file));
        EXPECT_FALSE(footage.setFileDnd(drop));
        EXPECT_EQ(footage.getErrorString(), c.error);
        EXPECT_EQ(footage.getReader().getSequenceString(), kept);
        EXPECT_EQ(node->getName(), name);
        EXPECT_EQ(stack().getNbUndoSteps(), steps);
    }
}

void* makePanel(PiNode&) {
    static int panel;
    return &panel;
}

// A host's package with panels: it registers the reader's factories when it
// initialises, after trying the refusals, and unregisters them when it
// finalises.
class PanelPackage : public InPackageInit {
public:
    PanelPackage() : InPackageInit("imageReaderPanels") { registerPackage(); }

    void initialize() override {
        using C = BtImageReaderController;
        std::pair<std::function<void()>, char const*> const refusals[] = {
            {[] { C::registerMainUiFactory("", makePanel); }, "!imageReaderXmlFile.isEmpty()"},
            {[] { C::registerMainUiFactory("<ToolUiDir>/imageReader.xml", nullptr); },
             "imageReaderUiFactory != 0"},
            {[] { C::registerOptionsUiFactory(nullptr); }, "imageReaderOptionsUiFactory != 0"},
        };
        for (auto const& [call, assertion] : refusals)
            refused.push_back(throwsWith<AssertionsEx::ExAssertionFailed>(call, assertion));
        C::registerMainUiFactory("<ToolUiDir>/imageReader.xml", makePanel);
        C::registerOptionsUiFactory(makePanel);
    }
    void finalize() override {
        BtImageReaderController::unregisterMainUiFactory();
        BtImageReaderController::unregisterOptionsUiFactory();
    }
    void setInitialized(bool initialized) override { _initialized = initialized; }
    bool isInitialized() const override { return _initialized; }
    std::type_info const& getPackageType() const override { return typeid(PanelPackage); }

    std::vector<testing::AssertionResult> refused;

private:
    bool _initialized = false;
};

TEST(ImageReaderUiFactories, onlyAHostPackageSetsThemWhenItInitialisesAndTakesThemBackWhenItFinalises) {
    InInitMgr& packages = InInitMgr::getInstance();
    packages.initializeAll();
    std::pair<std::function<void()>, char const*> const outside[] = {
        {[] { BtImageReaderController::registerMainUiFactory("<ToolUiDir>/imageReader.xml", makePanel); },
         "InInitMgr::getInstance().isInitializing()"},
        {[] { BtImageReaderController::registerOptionsUiFactory(makePanel); },
         "InInitMgr::getInstance().isInitializing()"},
        {[] { BtImageReaderController::unregisterMainUiFactory(); },
         "InInitMgr::getInstance().isFinalizing()"},
        {[] { BtImageReaderController::unregisterOptionsUiFactory(); },
         "InInitMgr::getInstance().isFinalizing()"},
    };
    for (auto const& [call, assertion] : outside)
        EXPECT_TRUE(throwsWith<AssertionsEx::ExAssertionFailed>(call, assertion));
    EXPECT_EQ(BtImageReaderController::getMainUiFactory(), nullptr);
    {
        PanelPackage host;
        packages.initializeAll();
        ASSERT_EQ(host.refused.size(), 3u);
        for (testing::AssertionResult const& refusal : host.refused)
            EXPECT_TRUE(refusal);
        EXPECT_EQ(BtImageReaderController::getMainUiFactory(), &makePanel);
        EXPECT_EQ(BtImageReaderController::getMainUiXmlFile(), "<ToolUiDir>/imageReader.xml");
        EXPECT_EQ(BtImageReaderController::getOptionsUiFactory(), &makePanel);
        packages.finalizeAll();
    }
    EXPECT_EQ(BtImageReaderController::getMainUiFactory(), nullptr);
    EXPECT_EQ(BtImageReaderController::getMainUiXmlFile(), "");
    EXPECT_EQ(BtImageReaderController::getOptionsUiFactory(), nullptr);
    // The other tests of this program find the packages as they left them.
    packages.initializeAll();
}

} // namespace
