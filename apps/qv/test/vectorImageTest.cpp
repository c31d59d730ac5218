// What qv motio makes of a vector image: the summary line, the EXR of two
// float channels and the colour wheel image, read back through the image
// library itself.
#include "exBase.h"
#include "inInitMgr.h"
#include "ixPixelUtil.h"
#include "ixWriteGuard.h"
#include "mediaTestUtil.h"
#include "qvFlowColorWheel.h"
#include "qvVectorImage.h"

#include <OpenImageIO/imageio.h>
#include <cmath>
#include <filesystem>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace Qv {
namespace {

// A half-float RGB tile as the motion cache serves it, (vx, vy, 0) from the
// given region; the region's origin need not be 0.
IxTile vectorTile(GeRectangle<int> const& region, std::vector<std::pair<float, float>> const& values) {
    IxTile const tile(IxPixelFormat(IxPixelFormat::RGB, IxPixelFormat::FLOAT16), region);
    IxWriteGuard const guard(tile);
    std::size_t i = 0;
    for (int y = region.y1; y < region.y2; ++y)
        for (int x = region.x1; x < region.x2; ++x, ++i)
            IxPixelUtil::setPixelColor(guard, x, y, {values[i].first, values[i].second, 0.0f, 1.0f});
    return tile;
}

using VectorImage = MediaTest::FileTest;

TEST(VectorImageText, numbersAreShortestOfSixDigitsWithNoNegativeZero) {
    std::vector<std::pair<double, char const*>> const cases{
        {0.0, "0"},      {-0.0, "0"}, {2.983754, "2.98375"}, {-1.5, "-1.5"}, {1234567.0, "1.23457e+06"},
        {1e-7, "1e-07"}, {3.0, "3"},
    };
    for (auto const& [value, text] : cases)
        EXPECT_EQ(QvVectorImage::formatNumber(value), text) << value;
    EXPECT_EQ(QvVectorImage::formatStats({3.0, -2.0, 3.605551}), "mean 3 -2 max 3.60555");
}

TEST(VectorImageStats, meansOfEachComponentAndTheLargestMagnitude) {
    float const nan = std::numeric_limits<float>::quiet_NaN();
    struct Case {
        char const* what;
        std::vector<std::pair<float, float>> values; // 2 by 2
        double meanX, meanY, max;
    };
    std::vector<Case> const cases{
        {"a uniform shift", {{3, -2}, {3, -2}, {3, -2}, {3, -2}}, 3.0, -2.0, std::sqrt(13.0)},
        {"opposite vectors cancel, the largest stays", {{3, 4}, {-3, -4}, {0, 0}, {1, 0}}, 0.25, 0.0, 5.0},
        {"still", {{0, 0}, {-0.0f, 0}, {0, -0.0f}, {0, 0}}, 0.0, 0.0, 0.0},
    };
    for (Case const& c : cases) {
        QvVectorImage::Stats const stats = QvVectorImage(vectorTile({-1, 1, 5, 7}, c.values)).getStats();
        EXPECT_DOUBLE_EQ(stats.meanX, c.meanX) << c.what;
        EXPECT_DOUBLE_EQ(stats.meanY, c.meanY) << c.what;
        // The tile holds halves: sqrt(13) to their precision.
        EXPECT_NEAR(stats.maxMagnitude, c.max, 1e-6) << c.what;
    }
    QvVectorImage::Stats const withNan =
        QvVectorImage(vectorTile({0, 2, 0, 1}, {{nan, 0}, {1, 1}})).getStats();
    EXPECT_TRUE(std::isnan(withNan.meanX) && std::isnan(withNan.maxMagnitude));
    EXPECT_EQ(withNan.meanY, 0.5);
    EXPECT_EQ(QvVectorImage::formatStats(QvVectorImage(IxTile()).getStats()), "mean 0 0 max 0");
}

TEST_F(VectorImage, theExrHoldsTwoFloatChannelsRAndGFromTheTopLeft) {
    // 3 by 2 from (-1, 5): pixel (x, y) of the file is (x - 0.5 * y, 10 + y).
    std::vector<std::pair<float, float>> values;
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 3; ++x)
            values.emplace_back(float(x) - 0.5f * float(y), 10.0f + float(y));
    QvVectorImage(vectorTile({-1, 2, 5, 7}, values)).writeExr(path("v.exr"));
    EXPECT_EQ(listDir(), std::vector<std::string>{"v.exr"}) << "no temporary file left";

    auto input = OIIO::ImageInput::open(path("v.exr").toString());
    ASSERT_TRUE(input);
    OIIO::ImageSpec const& spec = input->spec();
    EXPECT_EQ(spec.channelnames, (std::vector<std::string>{"R", "G"}));
    EXPECT_EQ(spec.format, OIIO::TypeDesc::FLOAT);
    ASSERT_EQ(spec.width, 3);
    ASSERT_EQ(spec.height, 2);
    std::vector<float> pixels(12);
    ASSERT_TRUE(input->read_image(0, 0, 0, 2, OIIO::TypeDesc::FLOAT, pixels.data()));
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 3; ++x) {
            EXPECT_EQ(pixels[std::size_t(2 * (3 * y + x))], float(x) - 0.5f * float(y)) << x << " " << y;
            EXPECT_EQ(pixels[std::size_t(2 * (3 * y + x) + 1)], 10.0f + float(y)) << x << " " << y;
        }
}

TEST_F(VectorImage, theWheelImageIsEightBitRgbScaledByTheLargestMagnitudeUnlessGiven) {
    // Right 2, down 2, left 1, still: the largest magnitude, 2, is full colour.
    QvVectorImage const image(vectorTile({0, 4, 0, 1}, {{2, 0}, {0, 2}, {-1, 0}, {0, 0}}));
    struct Case {
        char const* what;
        float max;
        std::vector<QvFlowColorWheel::Rgb8> rgb;
    };
    std::vector<Case> const cases{
        {"the largest magnitude", 0.0f, {{255, 0, 0}, {255, 229, 0}, {127, 232, 255}, {255, 255, 255}}},
        // Half the magnitudes: the first two beyond the maximum, darkened; the third at it.
        {"a maximum of 1", 1.0f, {{191, 0, 0}, {191, 172, 0}, {0, 209, 255}, {255, 255, 255}}},
    };
    for (Case const& c : cases) {
        image.writeWheel(path("w.png"), c.max);
        auto input = OIIO::ImageInput::open(path("w.png").toString());
        ASSERT_TRUE(input) << c.what;
        EXPECT_EQ(input->spec().nchannels, 3) << c.what;
        EXPECT_EQ(input->spec().format, OIIO::TypeDesc::UINT8) << c.what;
        std::vector<std::uint8_t> pixels(12);
        ASSERT_TRUE(input->read_image(0, 0, 0, 3, OIIO::TypeDesc::UINT8, pixels.data())) << c.what;
        for (std::size_t i = 0; i < 4; ++i)
            EXPECT_EQ((QvFlowColorWheel::Rgb8{pixels[3 * i], pixels[3 * i + 1], pixels[3 * i + 2]}), c.rgb[i])
                << c.what << " pixel " << i;
    }
}

TEST_F(VectorImage, anEmptyImageWritesNothing) {
    EXPECT_THROW(QvVectorImage(IxTile()).writeExr(path("e.exr")), ExBase);
    EXPECT_THROW(QvVectorImage(IxTile()).writeWheel(path("e.png"), 0.0f), ExBase);
    EXPECT_TRUE(listDir().empty());
}

} // namespace
} // namespace Qv
