// Imports: the guesses by size, the node an import makes and its inner
// reader, footage entries of a project and the refusals that leave the
// first entry as it was, and a stored import whose inside was tampered with.
#include "../../../base/test/baseTestHelpers.h"
#include "assertions.h"
#include "btImageImportController.h"
#include "btImageImportTool.h"
#include "ffImageWriteUtil.h"
#include "imageImportServices.h"
#include "inInitMgr.h"
#include "ixPixelUtil.h"
#include "ixWriteGuard.h"
#include "msgServer.h"
#include "omCompositionFile.h"
#include "omFolder.h"
#include "omProject.h"
#include "piImageSequence.h"
#include "piNode.h"
#include "piNodeRate.h"
#include "xmlElement.h"
#include "xmlWriter.h"

#include <fstream>
#include <sstream>

using namespace Qv;
using namespace Qv::TestHelpers;

namespace {

class ImageImport : public TempDirTest {
protected:
    static void SetUpTestSuite() { InInitMgr::getInstance().initializeAll(); }

    ImageImport()
        : _sink([this](MsgSeverity severity, std::string const& text) {
              _messages.push_back({severity, text});
          }) {}

    // One frame of name.0001.ext, width by height, in the file format of ext.
    std::string writeImage(std::string const& name, std::string const& ext, int width, int height,
                           IxPixelFormat::Depth depth = IxPixelFormat::FLOAT16) {
        IxTile const tile(IxPixelFormat(IxPixelFormat::RGB, depth), {0, width, 0, height});
        {
            IxWriteGuard const guard(tile);
            for (int y = 0; y < height; ++y)
                for (int x = 0; x < width; ++x)
                    IxPixelUtil::setPixelColor(guard, x, y, {0.25f, 0.5f, 0.75f, 1.0f});
        }
        OsFilePath const file = path(name + ".0001." + ext);
        FfImageWriteUtil::writeTile(file, tile);
        return file.toString();
    }
    std::string read(OsFilePath const& file) const {
        std::ostringstream text;
        text << std::ifstream(file.toString(), std::ios::binary).rdbuf();
        return text.str();
    }
    static BtImageImportServices& services() { return BtImageImportServices::getInstance(); }

    std::vector<std::pair<MsgSeverity, std::string>> _messages;
    MsgSinkGuard _sink;
};

TEST_F(ImageImport, guessesGoBySizeThroughTheVideoFormats) {
    struct Case {
        int width, height;
        Rational pixelRatio;
        Rational rate;
    };
    Rational const projectRate = PiNodeRate::getProjectRate();
    Case const cases[] = {
        {720, 486, Rational(9, 10), Rational(30000, 1001)},
        {720, 576, Rational(16, 15), Rational(25, 1)},
        {123, 45, Rational(1, 1), projectRate},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(testing::Message() << c.width << "x" << c.height);
        EXPECT_EQ(services().guessPixelRatio(c.width, c.height), c.pixelRatio);
        EXPECT_EQ(services().guessRate(c.width, c.height), c.rate);
    }
}

TEST_F(ImageImport, anImportNodeHoldsItsReaderWithTheGuessesAndTheDepthClass) {
    struct Case {
        std::string ext;
        IxPixelFormat::Depth fileDepth;
        int depth;
        unsigned expected;
    };
    Case const cases[] = {
        {"png", IxPixelFormat::UINT8, BtImageImportServices::UNSPECIFIED_DEPTH, IxPixelFormat::FLOAT16},
        {"exr", IxPixelFormat::FLOAT32, BtImageImportServices::UNSPECIFIED_DEPTH, IxPixelFormat::FLOAT32},
        {"exr", IxPixelFormat::FLOAT32, ImPixelFormat::ECR, IxPixelFormat::FLOAT16},
    };
    int n = 0;
    for (Case const& c : cases) {
        SCOPED_TRACE(c.ext + " " + std::to_string(c.depth));
        std::string const name = "shot" + std::to_string(++n);
        std::string problem;
        RCStrongPtr<PiImageSequence> const sequence =
            ImageImportServices::findSequence(writeImage(name, c.ext, 720, 486, c.fileDepth), problem);
        ASSERT_FALSE(sequence.isNull()) << problem;
        RCShdPtr<PiGraph> const graph(new PiGraph);
        BtImageImportServices::Options options;
        options.depth = c.depth;
        RCShdPtr<PiNode> const node = services().createImportNode(*graph, sequence, name, options);
        BtImageImportController& import = *node->getInterface<BtImageImportController>();
        EXPECT_EQ(node->getName(), name);
        EXPECT_EQ(import.getReaderNode()->getName(), BtImageImportTool::READER_NODE_NAME);
        EXPECT_EQ(import.getDepth(), c.expected);
        EXPECT_EQ(import.getPixelRatio(), Rational(9, 10));
        EXPECT_EQ(import.getReader().getRate(), Rational(30000, 1001));
        EXPECT_FALSE(node->getOutput(BtImageImportTool::getOutputImageName(), true)->getProcNode().isNull());
    }
}

TEST_F(ImageImport, aSecondImportOfANameLeavesTheFirstEntryAsItWas) {
    OmProject const project = OmProject::create(path("project"));
    OmFolder const folder = services().getDefaultFolder(project);
    ASSERT_FALSE(folder.isNull());
    std::string const plate = writeImage("plate", "exr", 16, 8);
    std::vector<OmLink> const first = services().importFiles(folder, {plate}, {});
    ASSERT_EQ(first.size(), 1u);
    ASSERT_FALSE(first[0].isNull());
    EXPECT_EQ(first[0].getDisplayPath(), "Footage/plate");
    OsFilePath const version = path("project/Footage/plate/Original Footage.qvc");
    std::string const before = read(version);
    ASSERT_FALSE(before.empty());

    _messages.clear();
    std::string const other = writeImage("other", "exr", 32, 8);
    struct Case {
        std::string name;
        std::string message;
    };
    Case const cases[] = {
        {"plate", "A composition named \"plate\" already exists; the file is not imported."},
        {"a/b", "\"a/b\" is not a valid composition name; the file is not imported."},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.name);
        _messages.clear();
        std::vector<OmLink> const again = services().importFiles(folder, {other}, c.name, {});
        ASSERT_EQ(again.size(), 1u);
        EXPECT_TRUE(again[0].isNull());
        ASSERT_EQ(_messages.size(), 1u);
        EXPECT_EQ(_messages[0].first, MsgSeverity::Warning);
        EXPECT_EQ(_messages[0].second, c.message);
        EXPECT_EQ(read(version), before);
    }
    _messages.clear();
    EXPECT_TRUE(services().importFiles(folder, {path("none.exr").toString()}, {})[0].isNull());
    ASSERT_EQ(_messages.size(), 1u);
    EXPECT_EQ(_messages[0].second, "The file \"" + path("none.exr").toString() + "\" does not exist.");
}

TEST_F(ImageImport, aStoredImportWhoseReaderWasRenamedIsRefused) {
    std::string problem;
    RCStrongPtr<PiImageSequence> const sequence =
        ImageImportServices::findSequence(writeImage("plate", "exr", 16, 8), problem);
    RCShdPtr<PiGraph> const graph(new PiGraph);
    services().createImportNode(*graph, sequence, "I", {});
    std::string text = XmlWriter::toString(OmCompositionFile::toXml(*graph));
    EXPECT_NO_THROW(OmCompositionFile::fromXml(XmlElement::parse(text), "good"));
    for (std::string const from : {"name=\"Reader\"", "from=\"Reader."})
        for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + 1))
            text.replace(at, from.size(), std::string(from).replace(from.find("Reader"), 6, "Other"));
    EXPECT_TRUE(throwsWith<AssertionsEx::ExAssertionFailed>(
        [&] { OmCompositionFile::fromXml(XmlElement::parse(text), "tampered"); },
        "_imageReaderNode->getName() == READER_NODE_NAME"));
}

} // namespace
