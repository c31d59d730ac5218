// Blocks narrower than the image, gathered into bands of rows: a band goes to
// the file once every one of its pixels has come, in any order, a block given
// again or over another counting once; the file holds the last pixels given.
// A pixel never given keeps its band from the file, and close() says so and
// leaves nothing behind.
#include "ffFileFormatMgr.h"
#include "ffIOEx.h"
#include "imMemoryBuffer.h"
#include "imReadGuard.h"
#include "imWriteGuard.h"
#include "mediaTestUtil.h"

#include <fmt/format.h>
#include <limits>

namespace Qv {
namespace {

constexpr int WIDTH = 40;
constexpr int HEIGHT = 20; // two bands of 10 rows

struct Block {
    int x1, x2, y1, y2;
};

struct BlocksCase {
    char const* what;
    std::vector<Block> blocks;
    int rowsWritten; // all of them, or where the first incomplete band starts
    std::pair<int, int> gap = {};
};

// Component c of pixel (x, y) in the i-th block: every block different, each
// value exact in any depth the test stores.
float valueOf(std::size_t i, int x, int y, int c) {
    return static_cast<float>((x * 7 + y * 3 + c * 5 + static_cast<int>(i) * 11) % 256) / 255.0f;
}

ImImageConst blockOf(std::size_t i, Block const& b) {
    ImImage const image(ImLayout({b.x1, b.x2, b.y1, b.y2}, ImFormat(4, ImPixelFormat::HDR)),
                        ImMemoryBuffer::Factory::getInstance());
    ImWriteGuard const guard(image);
    for (int y = b.y1; y < b.y2; ++y)
        for (int x = b.x1; x < b.x2; ++x)
            for (int c = 0; c < 4; ++c)
                guard.getLineAs<float>(y)[(x - b.x1) * 4 + c] = valueOf(i, x, y, c);
    return image;
}

class ImageFileBlocks : public MediaTest::FileTest {};

TEST_F(ImageFileBlocks, aBandIsWrittenOnceEveryPixelCame) {
    std::vector<BlocksCase> const cases{
        {"halves in order", {{0, 20, 0, 10}, {20, 40, 0, 10}, {0, 20, 10, 20}, {20, 40, 10, 20}}, HEIGHT},
        {"halves in reverse order",
         {{20, 40, 0, 10}, {0, 20, 0, 10}, {20, 40, 10, 20}, {0, 20, 10, 20}},
         HEIGHT},
        {"quarters in any order",
         {{30, 40, 0, 10},
          {0, 10, 0, 10},
          {20, 30, 0, 10},
          {10, 20, 0, 10},
          {10, 40, 10, 20},
          {0, 10, 10, 20}},
         HEIGHT},
        {"overlapping blocks", {{0, 25, 0, 10}, {15, 40, 0, 10}, {0, 40, 10, 20}}, HEIGHT},
        {"a block given twice, then the rest",
         {{0, 20, 0, 10}, {0, 20, 0, 10}, {20, 40, 0, 10}, {0, 40, 10, 20}},
         HEIGHT},
        {"a whole row of blocks over a started band",
         {{5, 10, 0, 10}, {0, 40, 0, 10}, {0, 40, 10, 20}},
         HEIGHT},
        {"a block given twice counts once", {{0, 20, 0, 10}, {0, 20, 0, 10}}, 0, {20, 40}},
        {"overlaps that leave a gap", {{0, 25, 0, 10}, {10, 30, 0, 10}}, 0, {30, 40}},
        {"one column never given", {{0, 20, 0, 10}, {21, 40, 0, 10}}, 0, {20, 21}},
        {"the second band short of its first column", {{0, 40, 0, 10}, {1, 40, 10, 20}}, 10, {0, 1}},
    };
    for (BlocksCase const& c : cases) {
        OsFilePath const file = path("blocks.exr");
        std::vector<float> model(WIDTH * HEIGHT * 4, std::numeric_limits<float>::quiet_NaN());
        {
            PiImageFilePtr const out = FfFileFormatMgr::getInstance().createImageFile(file);
            out->setSize(WIDTH, HEIGHT);
            out->setFormat(ImFormat(4, ImPixelFormat::HDR));
            for (std::size_t i = 0; i < c.blocks.size(); ++i) {
                Block const& b = c.blocks[i];
                out->writeBlock(blockOf(i, b));
                for (int y = b.y1; y < b.y2; ++y)
                    for (int x = b.x1; x < b.x2; ++x)
                        for (int k = 0; k < 4; ++k)
                            model[static_cast<std::size_t>((y * WIDTH + x) * 4 + k)] = valueOf(i, x, y, k);
            }
            if (c.rowsWritten < HEIGHT) {
                try {
                    out->close();
                    ADD_FAILURE() << c.what << ": closed with pixels missing";
                } catch (FfIOEx::ExIncompleteFile const& error) {
                    std::string const detail = error.getDetail();
                    EXPECT_NE(detail.find(fmt::format("after {} of {} rows", c.rowsWritten, HEIGHT)),
                              std::string::npos)
                        << c.what << ": " << detail;
                    EXPECT_NE(detail.find(fmt::format("columns {} to {}", c.gap.first, c.gap.second)),
                              std::string::npos)
                        << c.what << ": " << detail;
                }
                EXPECT_TRUE(listDir().empty()) << c.what << ": the temporary file stays";
                EXPECT_THROW(out->writeBlock(blockOf(0, {0, WIDTH, 0, HEIGHT})), FfIOEx::ExOpNotSupported)
                    << c.what << ": a block after the failed close";
                continue;
            }
            out->close();
        }
        PiImageFilePtr const in = FfFileFormatMgr::getInstance().openImageFile(file);
        in->setFormat(ImFormat(4, ImPixelFormat::HDR));
        for (ImImageConst strip = in->readStrip(); !strip.isNull(); strip = in->readStrip()) {
            ImReadGuard const guard(strip);
            for (int y = strip.getRect().y1; y < strip.getRect().y2; ++y)
                for (int x = 0; x < WIDTH; ++x)
                    for (int k = 0; k < 4; ++k)
                        ASSERT_EQ(guard.getLineAs<float>(y)[x * 4 + k],
                                  model[static_cast<std::size_t>((y * WIDTH + x) * 4 + k)])
                            << c.what << ": pixel " << x << ", " << y << " component " << k;
        }
        std::filesystem::remove(file.toStdPath());
    }
}

} // namespace
} // namespace Qv
