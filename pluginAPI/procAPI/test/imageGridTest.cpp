// The tile grid and the conversions between nominal and pixel regions.
#include "assertions.h"
#include "pxConfig.h"
#include "pxImageProtocol.h"
#include "pxSettings.h"
#include "pxStreams.h"

#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <random>

using namespace Qv;

namespace {
using P = PxImageProtocol;

// Sets the tile size for one test and puts the default back.
struct TileSize {
    explicit TileSize(int size) { PxConfig::setTileSize(size, size); }
    ~TileSize() { PxConfig::setTileSize(PxConfig::DEFAULT_TILE_SIZE, PxConfig::DEFAULT_TILE_SIZE); }
};
} // namespace

TEST(ImageGrid, PixelsAndTilesConvertAcrossZero) {
    TileSize const size(16);
    struct Case {
        GeRectangle<int> pixels;
        GeRectangle<int> tiles;
    };
    for (Case const& c : {
             Case{{0, 16, 0, 16}, {0, 1, 0, 1}},
             Case{{0, 17, 0, 1}, {0, 2, 0, 1}},
             Case{{-1, 1, -16, 0}, {-1, 1, -1, 0}},
             Case{{-17, -16, -33, -32}, {-2, -1, -3, -2}},
             Case{{5, 5, 3, 9}, {0, 0, 0, 0}},
         }) {
        EXPECT_EQ(P::convertPixelsToTiles(c.pixels), c.tiles) << c.pixels;
        if (!c.pixels.isEmpty()) {
            EXPECT_TRUE(P::convertTilesToPixels(c.tiles).contains(c.pixels)) << c.pixels;
        }
    }
    EXPECT_EQ(P::convertPixelToTile({-1, -16}), (GePoint2<int>{-1, -1}));
    EXPECT_EQ(P::convertPixelToTile({15, 16}), (GePoint2<int>{0, 1}));
    EXPECT_EQ(P::getTilePixels({-1, 2}), (GeRectangle<int>{-16, 0, 32, 48}));
}

TEST(ImageGrid, ProxyScaleIsAPowerOfTwo) {
    EXPECT_EQ(P::proxyScaleToFactor(0), 1.0f);
    EXPECT_EQ(P::proxyScaleToFactor(3), 0.125f);
}

// Random nominal regions, pixel aspects and proxy scales: the pixels of a
// nominal region hold all of it and not a pixel more; and pixels read as
// nominal and back are the same pixels.
TEST(ImageGrid, NominalToPixelNeverLosesAPixel) {
    std::mt19937 random(20261122);
    std::uniform_real_distribution<float> coordinate(-5000.0f, 5000.0f);
    std::uniform_int_distribution<int> pixel(-3000, 3000);
    std::uniform_int_distribution<int> proxy(0, 5);
    double const aspects[] = {1.0, 10.0 / 11.0, 2.0, 0.5, 4.0 / 3.0, 1.0 / 3.0};
    for (int i = 0; i < 20000; ++i) {
        double const aspect = aspects[i % 6];
        double const scale = P::proxyScaleToFactor(proxy(random));
        float const ax = coordinate(random), bx = coordinate(random), ay = coordinate(random),
                    by = coordinate(random);
        GeRectangle<float> const nominal{std::min(ax, bx), std::max(ax, bx), std::min(ay, by),
                                         std::max(ay, by)};
        GeRectangle<int> const pixels = P::nominalToPixelized(nominal, aspect, scale);
        // Outward to whole pixels, up to the precision of float coordinates.
        auto slack = [](double v) { return 1e-6 + std::abs(v) * 5e-7; };
        double const x1 = nominal.x1 * scale / aspect, x2 = nominal.x2 * scale / aspect;
        double const y1 = nominal.y1 * scale, y2 = nominal.y2 * scale;
        ASSERT_TRUE(pixels.x1 <= x1 + slack(x1) && pixels.x1 > x1 - 1)
            << nominal << " " << aspect << " " << scale;
        ASSERT_TRUE(pixels.x2 >= x2 - slack(x2) && pixels.x2 < x2 + 1)
            << nominal << " " << aspect << " " << scale;
        ASSERT_TRUE(pixels.y1 <= y1 + slack(y1) && pixels.y1 > y1 - 1)
            << nominal << " " << aspect << " " << scale;
        ASSERT_TRUE(pixels.y2 >= y2 - slack(y2) && pixels.y2 < y2 + 1)
            << nominal << " " << aspect << " " << scale;

        int const px = pixel(random), py = pixel(random);
        GeRectangle<int> const exact{px, px + 1 + pixel(random) % 500 + 500, py,
                                     py + 1 + pixel(random) % 500 + 500};
        ASSERT_EQ(P::nominalToPixelized(P::pixelizedToNominal(exact, aspect, scale), aspect, scale), exact)
            << exact << " " << aspect << " " << scale;
    }
}

TEST(ImageGrid, CenteredRegionsPixelizeToTheirSize) {
    for (auto [width, height, aspect] : {std::tuple{1920, 1080, 1.0}, std::tuple{301, 77, 10.0 / 11.0},
                                         std::tuple{1, 1, 2.0}, std::tuple{4096, 2160, 0.5}}) {
        GeRectangle<int> const pixels =
            P::nominalToPixelized(P::createCenteredNominalROD(width, height, aspect), aspect, 1.0);
        EXPECT_EQ(pixels.getWidth(), width) << width << "x" << height << " " << aspect;
        EXPECT_EQ(pixels.getHeight(), height) << width << "x" << height << " " << aspect;
        EXPECT_EQ(pixels.x1, -(width / 2));
    }
}

TEST(ImageGrid, StreamsAndSettingsRefuseBadNumbers) {
    PxStreams::validateStream(0);
    PxStreams::validateStream(1);
    EXPECT_THROW(PxStreams::validateStream(2), AssertionsEx::ExAssertionFailed);
    EXPECT_THROW(PxStreams::validateStream(-1), AssertionsEx::ExAssertionFailed);

    struct Case {
        char const* text;
        char const* failure; // nullptr: accepted
    };
    for (Case const& c : {Case{"", nullptr}, Case{"64", nullptr}, Case{"0", "from 1 to 8192, not \"0\""},
                          Case{"16x16", "not \"16x16\""}, Case{"9000", "not \"9000\""}}) {
        ::setenv("QV_TEST_TILE_SIZE", c.text, 1);
        if (!c.failure) {
            EXPECT_EQ(PxSettings::readCount("QV_TEST_TILE_SIZE", 256, 8192), *c.text ? 64 : 256);
            continue;
        }
        try {
            PxSettings::readCount("QV_TEST_TILE_SIZE", 256, 8192);
            ADD_FAILURE() << "accepted " << c.text;
        } catch (ExBase const& error) {
            EXPECT_NE(error.getReason().find("QV_TEST_TILE_SIZE must be a whole number"), std::string::npos);
            EXPECT_NE(error.getReason().find(c.failure), std::string::npos) << error.getReason();
        }
    }
    ::unsetenv("QV_TEST_TILE_SIZE");
}
