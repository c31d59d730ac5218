// The "Image Reader" tool in a composition: choosing footage by path and the
// refusals, the name it takes, the attributes read once, undo and redo, the
// cache identity, the time mapping of its output, moved footage, and a
// composition whose footage is gone.
#include "../../../base/test/baseTestHelpers.h"
#include "btImageReaderController.h"
#include "btImageReaderTool.h"
#include "evEventManager.h"
#include "ffImageWriteUtil.h"
#include "inInitMgr.h"
#include "ixPixelUtil.h"
#include "ixReadGuard.h"
#include "ixWriteGuard.h"
#include "omCompositionFile.h"
#include "piCommandStack.h"
#include "piGraph.h"
#include "piImageSequence.h"
#include "piImageSocket.h"
#include "piNode.h"
#include "piOutput.h"

#include <chrono>
#include <cmath>
#include <filesystem>
#include <optional>

using namespace Qv;
using namespace Qv::TestHelpers;

namespace {

class ImageReaderTool : public TempDirTest {
protected:
    static void SetUpTestSuite() { InInitMgr::getInstance().initializeAll(); }

    // Frames first..first+count-1 of name.####.exr, 8 by 6, red = frame / 100.
    void writeFrames(std::string const& name, int first, int count, std::string const& folder = {}) {
        std::filesystem::create_directories(_root / folder);
        for (int f = first; f < first + count; ++f) {
            IxTile const tile(IxPixelFormat(IxPixelFormat::RGBA, IxPixelFormat::FLOAT32), {0, 8, 0, 6});
            {
                IxWriteGuard const guard(tile);
                for (int y = 0; y < 6; ++y)
                    for (int x = 0; x < 8; ++x)
                        IxPixelUtil::setPixelColor(guard, x, y, {f / 100.0f, 0.5f, 0.25f, 1.0f});
            }
            char number[8];
            std::snprintf(number, sizeof number, "%04d", f);
            FfImageWriteUtil::writeTile(
                path((folder.empty() ? "" : folder + "/") + name + "." + number + ".exr"), tile);
        }
    }

    RCShdPtr<PiNode> reader(std::string const& name = {}) { return _graph->createNode("Image Reader", name); }
    static BtImageReaderController& controller(RCShdPtr<PiNode> const& node) {
        return *node->getInterface<BtImageReaderController>();
    }
    std::string pattern(std::string const& text) const { return path(text).toString(); }

    // The red of the node's output at a frame of 24 a second; none where it shows nothing.
    static std::optional<float> redAt(RCShdPtr<PiNode> const& node, double frame) {
        IxTile const tile =
            PiImageSocket<PiOutput>(node->getOutput("Output Image", true)).getValue(frame / 24.0, 0);
        if (!tile.isValid() || tile.getPixelRegion().isEmpty())
            return std::nullopt;
        IxReadGuard const guard(tile);
        return IxPixelUtil::getPixelColor(guard, 2, 2).r;
    }

    RCShdPtr<PiGraph> _graph{new PiGraph};
};

TEST_F(ImageReaderTool, refusedPathsKeepTheNodeAsItWas) {
    writeFrames("plate", 1, 3);
    writeFrames("other", 1, 1);
    std::filesystem::rename(_root / "other.0001.exr", _root / "other.0001.xyz");
    struct Case {
        std::string path;
        std::string error;
    };
    std::string const none = pattern("none.[#].exr");
    Case const cases[] = {
        {"", "No path was specified"},
        {pattern("plate.[1:3.exr"), "Error parsing the path: "},
        {none, "No files match the query: " + none},
        {pattern("other.[1:1].xyz"), "Format of specified files is not supported"},
    };
    RCShdPtr<PiNode> const node = reader();
    BtImageReaderController& imageReader = controller(node);
    ASSERT_TRUE(imageReader.setSequencePath(pattern("plate.[#].exr")));
    std::string const kept = imageReader.getSequenceString();
    std::size_t const steps = _graph->getCommandStack().getNbUndoSteps();
    for (Case const& c : cases) {
        SCOPED_TRACE(c.path);
        EXPECT_FALSE(imageReader.setSequencePath(c.path));
        EXPECT_EQ(imageReader.getErrorString().substr(0, c.error.size()), c.error);
        EXPECT_EQ(imageReader.getSequenceString(), kept);
        EXPECT_EQ(_graph->getCommandStack().getNbUndoSteps(), steps);
        EXPECT_EQ(node->getName(), "plate");
    }
}

TEST_F(ImageReaderTool, aDefaultNameBecomesTheSequencesName) {
    writeFrames("plate", 1, 2);
    struct Case {
        std::string given;
        std::string expected;
    };
    Case const cases[] = {
        {"", "plate"}, {"ImageReader7", "plate1"}, {"Keep", "Keep"}, {"ImageReader", "ImageReader"}};
    for (Case const& c : cases) {
        SCOPED_TRACE(c.given);
        RCShdPtr<PiNode> const node = reader(c.given);
        ASSERT_TRUE(controller(node).setSequencePath(pattern("plate.[#].exr")));
        EXPECT_EQ(node->getName(), c.expected);
    }
}

TEST_F(ImageReaderTool, theFootageGivesItsAttributesOnceAndTheUsersStay) {
    writeFrames("plate", 11, 4);
    RCShdPtr<PiNode> const node = reader("R");
    BtImageReaderController& imageReader = controller(node);
    ASSERT_TRUE(imageReader.setSequencePath(pattern("plate.[#].exr")));
    EXPECT_EQ(imageReader.getInTime(), 11);
    EXPECT_EQ(imageReader.getOutTime(), 15);
    EXPECT_EQ(imageReader.getDepth(), unsigned(IxPixelFormat::FLOAT32));
    EXPECT_EQ(std::get<int>(node->getValue("Width", true)->getData()), 8);
    imageReader.setRate(Rational(25, 1));
    imageReader.setInTime(12);
    EXPECT_EQ(imageReader.getOutTime(), 15);
    // A locked duration: the mark out follows the mark in.
    node->getInput("Lock Duration", true)->setConstantValue(true);
    imageReader.setInTime(10);
    EXPECT_EQ(imageReader.getOutTime(), 13);
    node->getInput("Lock Duration", true)->setConstantValue(false);
    imageReader.setInTime(12);
    imageReader.setOutTime(15);

    // A saved composition read again keeps what the user set.
    RCShdPtr<PiGraph> const loaded = OmCompositionFile::fromXml(OmCompositionFile::toXml(*_graph), "test");
    BtImageReaderController& again = controller(loaded->getNode("R"));
    EXPECT_EQ(again.getRate(), Rational(25, 1));
    EXPECT_EQ(again.getInTime(), 12);
    EXPECT_EQ(again.getOutTime(), 15);
    EXPECT_EQ(again.getSequenceString(), imageReader.getSequenceString());
}

TEST_F(ImageReaderTool, everyEditIsOneUndoStepThatTheGraphFollows) {
    writeFrames("a", 1, 2);
    writeFrames("b", 5, 2);
    RCShdPtr<PiNode> const node = reader("R");
    BtImageReaderController& imageReader = controller(node);
    PiCommandStack& stack = _graph->getCommandStack();
    ASSERT_TRUE(imageReader.setSequencePath(pattern("a.[#].exr")));
    EXPECT_EQ(stack.getUndoLabel(), "Set Sequence Path");
    ASSERT_EQ(redAt(node, 1), 0.01f);

    struct Case {
        std::function<void()> edit;
        std::string label;
    };
    Case const cases[] = {
        {[&] { imageReader.setRate(Rational(30, 1)); }, "Set Rate"},
        {[&] { imageReader.setPixelRatio(Rational(2, 1)); }, "Set Pixel Ratio"},
        {[&] { imageReader.setDepth(IxPixelFormat::UINT8); }, "Set Depth"},
        {[&] { imageReader.setUnpremultiplyState(true); }, "Toggle Unpremultiply"},
        {[&] {
             imageReader.setUnpremultiplyBgColor({0.1f, 0.2f, 0.3f});
         },
         "Set Unpremultiply Background Color"},
        {[&] { imageReader.setFileFormatOptions("compression=zip"); }, "Modify File Format Import Options"},
        {[&] { imageReader.setMotionVectorInfo({CoMotionVectorInfo::HAS_VECTORS}); },
         "Set Motion Vector Info"},
        {[&] { imageReader.setSequencePath(pattern("b.[#].exr")); }, "Set Sequence Path"},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.label);
        std::size_t const steps = stack.getNbUndoSteps();
        c.edit();
        EXPECT_EQ(stack.getNbUndoSteps(), steps + 1);
        EXPECT_EQ(stack.getUndoLabel(), c.label);
    }
    // The new footage shows, and undoing brings the old one back to the output.
    EXPECT_EQ(redAt(node, 5), 0.05f);
    stack.undo();
    EXPECT_EQ(imageReader.getSequenceString(), pattern("a.[0001:0002].exr"));
    EXPECT_EQ(imageReader.getInTime(), 1);
    stack.redo();
    EXPECT_EQ(imageReader.getInTime(), 5);
    while (stack.canUndo())
        stack.undo();
    EXPECT_TRUE(imageReader.getImageSequence().isNull());
    EXPECT_EQ(node->getName(), "R");
}

TEST_F(ImageReaderTool, theMarksRepeatModeAndOffsetPlaceTheClip) {
    writeFrames("p", 1, 3);
    RCShdPtr<PiNode> const node = reader("R");
    BtImageReaderController& imageReader = controller(node);
    ASSERT_TRUE(imageReader.setSequencePath(pattern("p.[#].exr")));
    struct Case {
        TmTypes::RepeatMode mode;
        long long offset;
        long long sourceTime;
        double frame;
        std::optional<float> red;
    };
    Case const cases[] = {
        {TmTypes::NONE, 0, 0, 2, 0.02f},        {TmTypes::NONE, 0, 0, 4, std::nullopt},
        {TmTypes::LOOP, 0, 0, 4, 0.01f},        {TmTypes::LOOP, 0, 0, 0, 0.03f},
        {TmTypes::HOLD, 0, 0, 9, 0.03f},        {TmTypes::BOUNCE, 0, 0, 4, 0.03f},
        {TmTypes::NONE, -1, 0, 3, 0.02f},       {TmTypes::NONE, 0, 1, 2, 0.01f},
        {TmTypes::HOLD, 0, 1, 1, std::nullopt},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(testing::Message() << TmTypes::repeatModeToString(c.mode) << " offset " << c.offset
                                        << " source " << c.sourceTime << " frame " << c.frame);
        imageReader.setRepeatMode(c.mode);
        imageReader.setOffset(c.offset);
        imageReader.setSourceTime(c.sourceTime);
        EXPECT_EQ(redAt(node, c.frame), c.red);
    }
}

TEST_F(ImageReaderTool, readersOfOneFootageShareTheirCacheUntilItIsTouched) {
    writeFrames("p", 1, 2);
    RCShdPtr<PiNode> const a = reader("A");
    RCShdPtr<PiNode> const b = reader("B");
    ASSERT_TRUE(controller(a).setSequencePath(pattern("p.[#].exr")));
    ASSERT_TRUE(controller(b).setSequencePath(pattern("p.[#].exr")));
    redAt(a, 1);
    redAt(b, 1);
    std::string const identity = controller(a).getCacheIdentity();
    EXPECT_EQ(identity.rfind("ImageReaderCache:" + pattern("p.[0001:0002].exr") + "@", 0), 0u) << identity;
    EXPECT_EQ(controller(b).getCacheIdentity(), identity);

    std::filesystem::path const first = _root / "p.0001.exr";
    std::filesystem::last_write_time(first, std::filesystem::last_write_time(first) + std::chrono::hours(1));
    ASSERT_TRUE(controller(b).reloadImageSequence());
    redAt(b, 1);
    EXPECT_NE(controller(b).getCacheIdentity(), identity);
}

TEST_F(ImageReaderTool, movedFootageIsFollowedAndListed) {
    writeFrames("p", 1, 2, "old");
    RCShdPtr<PiNode> const node = reader("R");
    BtImageReaderController& imageReader = controller(node);
    ASSERT_TRUE(imageReader.setSequencePath(pattern("old/p.[#].exr")));
    imageReader.setRate(Rational(25, 1));
    std::filesystem::rename(_root / "old", _root / "new");
    ASSERT_TRUE(
        imageReader.relocateExternalDependencies({{(_root / "old").string(), (_root / "new").string()}}));
    EXPECT_EQ(
        imageReader.getExternalDependencies(PiExternalDependencyInterface::FILES),
        (std::vector<std::string>{(_root / "new/p.0001.exr").string(), (_root / "new/p.0002.exr").string()}));
    EXPECT_EQ(imageReader.getRate(), Rational(25, 1));
    EXPECT_EQ(redAt(node, 2), 0.02f);
    EXPECT_FALSE(imageReader.relocateExternalDependencies({{(_root / "elsewhere").string(), "/x"}}));
}

TEST_F(ImageReaderTool, aCompositionWhoseFootageIsGoneLoadsEditsAndSaves) {
    writeFrames("p", 1, 2);
    RCShdPtr<PiNode> const node = reader("R");
    ASSERT_TRUE(controller(node).setSequencePath(pattern("p.[#].exr")));
    XmlElement const saved = OmCompositionFile::toXml(*_graph);
    std::filesystem::remove(_root / "p.0001.exr");
    std::filesystem::remove(_root / "p.0002.exr");

    RCShdPtr<PiGraph> const loaded = OmCompositionFile::fromXml(saved, "test");
    BtImageReaderController& again = controller(loaded->getNode("R"));
    EXPECT_EQ(again.getSequenceString(), pattern("p.[0001:0002].exr"));
    again.setRate(Rational(30, 1));
    XmlElement const resaved = OmCompositionFile::toXml(*loaded);
    RCShdPtr<PiGraph> const third = OmCompositionFile::fromXml(resaved, "test");
    EXPECT_EQ(controller(third->getNode("R")).getSequenceString(), pattern("p.[0001:0002].exr"));
    EXPECT_EQ(controller(third->getNode("R")).getRate(), Rational(30, 1));
}

TEST_F(ImageReaderTool, aGuessedBackgroundIsItsOwnUndoStep) {
    writeFrames("p", 1, 1);
    RCShdPtr<PiNode> const node = reader("R");
    BtImageReaderController& imageReader = controller(node);
    ASSERT_TRUE(imageReader.setSequencePath(pattern("p.[#].exr")));
    imageReader.setUnpremultiplyState(true);
    std::size_t const steps = _graph->getCommandStack().getNbUndoSteps();
    imageReader.guessUnpremultiplyBgColor();
    redAt(node, 1);
    EvEventManager::getInstance().processEvents();
    EXPECT_EQ(_graph->getCommandStack().getNbUndoSteps(), steps + 1);
    EXPECT_EQ(_graph->getCommandStack().getUndoLabel(), "Guess Unpremultiply Background Color");
}

} // namespace
