// Images written through the file layer in each format and read back in strips.
#include "ffFileFormatMgr.h"
#include "ffImageWriteUtil.h"
#include "imComponent.h"
#include "imReadGuard.h"
#include "mediaTestUtil.h"

#include <algorithm>
#include <cmath>

namespace Qv {
namespace {

using MediaTest::FileTest;
using MediaTest::patternAt;
using MediaTest::patternTile;

constexpr int WIDTH = 37;
constexpr int HEIGHT = 150; // three strips of 64 rows: 64, 64, 22

struct FormatCase {
    char const* extension;
    char const* formatName;
    ImPixelFormat::Depth storedDepth; // what a FLOAT32 tile becomes in the file
    int storedComps;
    // Lossless formats hold the stored depth's value exactly; JPEG is compared
    // by its mean error (the sawtooth pattern is hard on it: about 0.03 at the
    // default quality), HDR within the 8-bit mantissa of the pixel's shared exponent.
    enum { EXACT, MEAN_ERROR, RELATIVE } check;
    float tolerance;
};

float quantise(float value, ImPixelFormat depth) {
    switch (depth.getDepth()) {
    case ImPixelFormat::UINT8:
        return IxComponent<std::uint8_t>::toFloat(IxComponent<std::uint8_t>::fromFloat(value));
    case ImPixelFormat::UINT16:
        return IxComponent<std::uint16_t>::toFloat(IxComponent<std::uint16_t>::fromFloat(value));
    case ImPixelFormat::ECR:
        return static_cast<float>(IxHalf(value));
    case ImPixelFormat::HDR:
        break;
    }
    return value;
}

class ImageFileRoundTrip : public FileTest, public ::testing::WithParamInterface<FormatCase> {};

TEST_P(ImageFileRoundTrip, pixelsComeBackInStripsTopToBottom) {
    FormatCase const& c = GetParam();
    OsFilePath const file = path(std::string("image.") + c.extension);
    FfImageWriteUtil::writeTile(file, patternTile(WIDTH, HEIGHT));
    EXPECT_EQ(listDir(), std::vector<std::string>{file.getBaseName(true)}) << "no temporary file stays";

    PiImageFilePtr const image = FfFileFormatMgr::getInstance().openImageFile(file);
    EXPECT_EQ(image->getFormatName(), c.formatName);
    EXPECT_EQ(image->getMaxRect(), (GeRectangle<int>{0, WIDTH, 0, HEIGHT}));
    ImFormat const stored = image->getFileLayout().getFormat();
    EXPECT_EQ(stored, ImFormat(c.storedComps, c.storedDepth));

    image->setFormat(ImFormat(4, ImPixelFormat::HDR));
    std::vector<GeRectangle<int>> strips;
    double errorSum = 0.0;
    int compared = 0;
    for (ImImageConst strip = image->readStrip(); !strip.isNull(); strip = image->readStrip()) {
        strips.push_back(strip.getRect());
        ImReadGuard const guard(strip);
        for (int y = strip.getRect().y1; y < strip.getRect().y2; ++y) {
            float const* row = guard.getLineAs<float>(y);
            for (int x = 0; x < WIDTH; ++x) {
                CoRgbaColorTyped<float> const want = patternAt(x, y);
                float const wanted[4] = {want.r, want.g, want.b, c.storedComps == 4 ? want.a : 1.0f};
                for (int k = 0; k < 4; ++k) {
                    float const expected = quantise(wanted[k], stored.getPixelFormat());
                    float const got = row[x * 4 + k];
                    float const error = std::fabs(got - expected);
                    errorSum += error;
                    ++compared;
                    if (c.check == FormatCase::EXACT) {
                        ASSERT_LE(error, 1e-6f) << "pixel " << x << ", " << y << " component " << k;
                    } else if (c.check == FormatCase::RELATIVE) {
                        ASSERT_LE(error, std::max({want.r, want.g, want.b}) * c.tolerance + 1e-6f)
                            << "pixel " << x << ", " << y;
                    }
                }
            }
        }
    }
    EXPECT_EQ(strips,
              (std::vector<GeRectangle<int>>{{0, WIDTH, 0, 64}, {0, WIDTH, 64, 128}, {0, WIDTH, 128, 150}}));
    if (c.check == FormatCase::MEAN_ERROR) {
        EXPECT_LE(errorSum / compared, c.tolerance);
    }
    EXPECT_TRUE(image->readStrip().isNull()) << "the end stays the end";
}

INSTANTIATE_TEST_SUITE_P(
    Formats, ImageFileRoundTrip,
    ::testing::Values(FormatCase{"exr", "EXR", ImPixelFormat::HDR, 4, FormatCase::EXACT, 0},
                      FormatCase{"tif", "TIFF", ImPixelFormat::HDR, 4, FormatCase::EXACT, 0},
                      FormatCase{"dpx", "DPX", ImPixelFormat::UINT16, 4, FormatCase::EXACT, 0},
                      FormatCase{"png", "PNG", ImPixelFormat::UINT16, 4, FormatCase::EXACT, 0},
                      FormatCase{"tga", "TGA", ImPixelFormat::UINT8, 4, FormatCase::EXACT, 0},
                      FormatCase{"sgi", "SGI", ImPixelFormat::UINT16, 4, FormatCase::EXACT, 0},
                      FormatCase{"jpg", "JPEG", ImPixelFormat::UINT8, 3, FormatCase::MEAN_ERROR, 0.04f},
                      FormatCase{"hdr", "HDR", ImPixelFormat::HDR, 3, FormatCase::RELATIVE, 1.0f / 128}),
    [](auto const& info) { return std::string(info.param.extension); });

} // namespace
} // namespace Qv
