// What the file layer says about files it cannot read or write: always an
// FfIOEx that names the file, and never a file left half written.
#include "ffFileFormatMgr.h"
#include "ffIOEx.h"
#include "ffImageWriteUtil.h"
#include "ixUtil.h"
#include "mediaTestUtil.h"

#include <fstream>

namespace Qv {
namespace {

using MediaTest::patternTile;

class ImageFileErrors : public MediaTest::FileTest {
protected:
    void writeText(OsFilePath const& file, std::string const& text) {
        std::ofstream(file.toString()) << text;
    }
};

template <class Ex>
void expectNamed(std::function<void()> const& run, OsFilePath const& file, std::string const& what) {
    try {
        run();
        ADD_FAILURE() << what << ": nothing thrown";
    } catch (Ex const& error) {
        EXPECT_EQ(error.getFileName(), file.toString()) << what;
        EXPECT_NE(std::string(error.what()).find(file.toString()), std::string::npos)
            << what << ": " << error.what();
    } catch (FfIOEx const& error) {
        ADD_FAILURE() << what << ": another FfIOEx: " << error.what();
    }
}

TEST_F(ImageFileErrors, filesThatCannotBeOpenedAreNamed) {
    FfFileFormatMgr const& formats = FfFileFormatMgr::getInstance();
    OsFilePath const unknown = path("notes.xyz");
    writeText(unknown, "text");
    OsFilePath const fake = path("fake.png");
    writeText(fake, "not a png at all");
    OsFilePath const missing = path("missing.exr");
    expectNamed<FfIOEx::ExUnknownFormat>([&] { formats.openFile(unknown); }, unknown, "unknown extension");
    expectNamed<FfIOEx::ExUnknownFormat>([&] { formats.createImageFile(path("out.xyz")); }, path("out.xyz"),
                                         "unknown extension to write");
    expectNamed<FfIOEx::ExUnknownFormat>([&] { formats.openImageFile(path("movie.mov")); }, path("movie.mov"),
                                         "a movie is no image file");
    expectNamed<FfIOEx::ExFileNotFound>([&] { formats.openFile(missing); }, missing, "missing file");
    expectNamed<FfIOEx::ExReadError>([&] { formats.openFile(fake); }, fake, "not what its extension says");
    expectNamed<FfIOEx::ExOpNotSupported>(
        [&] { formats.createFile(path("out.cin"), *formats.findFormat("Cineon")); }, path("out.cin"),
        "a read-only format");
    expectNamed<FfIOEx::ExWriteError>([&] { formats.createImageFile(path("no/such/folder/out.exr")); },
                                      path("no/such/folder/out.exr"), "a folder that is not there");
}

TEST_F(ImageFileErrors, aFailedWriteLeavesNothingAndKeepsTheOldFile) {
    OsFilePath const file = path("frame.exr");
    FfImageWriteUtil::writeTile(file, patternTile(8, 8));
    auto const before = std::filesystem::file_size(file.toStdPath());
    ImImageConst const rows = IxUtil::ixTileToImImageConst(patternTile(40, 10));

    struct Case {
        char const* what;
        std::function<void(PiImageFile&)> run;
    };
    std::vector<Case> const cases{
        {"closed before the last row",
         [&](PiImageFile& out) {
             out.writeBlock(rows);
             EXPECT_THROW(out.close(), FfIOEx::ExIncompleteFile);
         }},
        {"a block out of order",
         [&](PiImageFile& out) {
             ImImageConst const later(
                 ImLayout({0, 40, 20, 30}, rows.getFormat(), rows.getLayout().getRowBytes()),
                 rows.getMemory());
             EXPECT_THROW(out.writeBlock(later), FfIOEx::ExOpNotSupported);
         }},
        {"a block outside the image",
         [&](PiImageFile& out) {
             ImImageConst const outside(
                 ImLayout({30, 70, 0, 10}, rows.getFormat(), rows.getLayout().getRowBytes()),
                 rows.getMemory());
             EXPECT_THROW(out.writeBlock(outside), FfIOEx::ExOpNotSupported);
         }},
        {"dropped without close", [&](PiImageFile& out) { out.writeBlock(rows); }},
    };
    for (Case const& c : cases) {
        {
            PiImageFilePtr const out = FfFileFormatMgr::getInstance().createImageFile(file);
            out->setSize(40, 30);
            c.run(*out);
        }
        EXPECT_EQ(listDir(), std::vector<std::string>{"frame.exr"}) << c.what;
        EXPECT_EQ(std::filesystem::file_size(file.toStdPath()), before) << c.what;
    }
}

} // namespace
} // namespace Qv
