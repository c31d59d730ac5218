// Tiled files, which the file layer never writes but footage often is (tiled
// EXR, tiled TIFF), written here by the image library itself and read back
// converted, whole and from a row inside a tile.
#include "ffFileFormatMgr.h"
#include "imReadGuard.h"
#include "mediaTestUtil.h"

#include <OpenImageIO/imageio.h>
#include <cmath>
#include <vector>

namespace Qv {
namespace {

using MediaTest::FileTest;
using MediaTest::patternAt;

constexpr int WIDTH = 37;
constexpr int HEIGHT = 50;
constexpr int TILE = 16;

void writeTiled(OsFilePath const& file, OIIO::TypeDesc type) {
    OIIO::ImageSpec spec(WIDTH, HEIGHT, 4, type);
    spec.tile_width = TILE;
    spec.tile_height = TILE;
    std::vector<float> pixels;
    for (int y = 0; y < HEIGHT; ++y)
        for (int x = 0; x < WIDTH; ++x) {
            CoRgbaColorTyped<float> const p = patternAt(x, y);
            pixels.insert(pixels.end(), {p.r, p.g, p.b, p.a});
        }
    std::unique_ptr<OIIO::ImageOutput> const out = OIIO::ImageOutput::create(file.toString());
    ASSERT_TRUE(out && out->open(file.toString(), spec)) << OIIO::geterror();
    ASSERT_TRUE(out->write_image(OIIO::TypeDesc::FLOAT, pixels.data())) << out->geterror();
    ASSERT_TRUE(out->close());
}

class ImageFileTiled : public FileTest, public ::testing::WithParamInterface<char const*> {};

TEST_P(ImageFileTiled, readsConvertedWholeAndFromARowInsideATile) {
    OsFilePath const file = path(std::string("tiled.") + GetParam());
    writeTiled(file, std::string(GetParam()) == "exr" ? OIIO::TypeDesc::HALF : OIIO::TypeDesc::UINT16);
    for (int top : {0, 5}) {
        PiImageFilePtr const image = FfFileFormatMgr::getInstance().openImageFile(file);
        image->setFormat(ImFormat(4, ImPixelFormat::HDR));
        image->setRegion({0, WIDTH, top, HEIGHT});
        int rows = 0;
        for (ImImageConst strip = image->readStrip(); !strip.isNull(); strip = image->readStrip()) {
            ImReadGuard const guard(strip);
            for (int y = strip.getRect().y1; y < strip.getRect().y2; ++y, ++rows) {
                float const* row = guard.getLineAs<float>(y);
                for (int x = 0; x < WIDTH; ++x) {
                    CoRgbaColorTyped<float> const want = patternAt(x, y);
                    // Half floats hold k / 255 to within 1e-3.
                    ASSERT_NEAR(row[x * 4], want.r, 1e-3f)
                        << "pixel " << x << ", " << y << " from row " << top;
                    ASSERT_NEAR(row[x * 4 + 3], want.a, 1e-3f) << "pixel " << x << ", " << y;
                }
            }
        }
        EXPECT_EQ(rows, HEIGHT - top);
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, ImageFileTiled, ::testing::Values("exr", "tif"));

} // namespace
} // namespace Qv
