// The forward warp node over small images whose results are worked out by
// hand: holes, vectors off the frame or not numbers, vectors of another
// size, any number of warps and any tile size.
#include "btFwdWarpTool.h"
#include "btWarpUtils.h"
#include "motioTestSupport.h"
#include "pxEx.h"

#include <cmath>
#include <gtest/gtest.h>

using namespace Qv;
using namespace Qv::MotioTest;

namespace {

Rgba const HOLE = Rgba::ZERO;

// The image with a hole at one pixel.
PixelFn holeAt(int px, int py) {
    return [=](int x, int y) { return x == px && y == py ? HOLE : smallValue(x, y); };
}

std::vector<WarpCase> const& warpCases() {
    static std::vector<WarpCase> const cases = {
        {"zero field", SMALL_FRAME,
         [](int, int) {
             return std::pair{0.0f, 0.0f};
         },
         smallValue},
        {"half a pixel right", SMALL_FRAME,
         [](int, int) {
             return std::pair{0.5f, 0.0f};
         },
         [](int x, int y) {
             return x == 0 ? smallValue(x, y) : mean(smallValue(x - 1, y), smallValue(x, y));
         }},
        {"half a pixel up", SMALL_FRAME,
         [](int, int) {
             return std::pair{0.0f, -0.5f};
         },
         [](int x, int y) {
             return y == 2 ? smallValue(x, y) : mean(smallValue(x, y), smallValue(x, y + 1));
         }},
        {"one pixel right", SMALL_FRAME,
         [](int, int) {
             return std::pair{1.0f, 0.0f};
         },
         [](int x, int y) { return x == 0 ? HOLE : smallValue(x - 1, y); }},
        {"one pixel sent far right", SMALL_FRAME, vectorAt(1, 1, 100.0f, 0.0f), holeAt(1, 1)},
        {"one pixel sent far up and left", SMALL_FRAME, vectorAt(2, 0, -100.0f, -100.0f), holeAt(2, 0)},
        {"one pixel sent just past the bottom", SMALL_FRAME, vectorAt(3, 1, 0.0f, 2.0f), holeAt(3, 1)},
        {"a column converging on the next", SMALL_FRAME,
         [](int x, int) {
             return x == 1 ? std::pair{1.0f, 0.0f} : std::pair{0.0f, 0.0f};
         },
         [](int x, int y) {
             return x == 1 ? HOLE : x == 2 ? mean(smallValue(1, y), smallValue(2, y)) : smallValue(x, y);
         }},
        {"a NaN vector", SMALL_FRAME, vectorAt(1, 1, NaN, NaN), holeAt(1, 1)},
        {"a NaN across only", SMALL_FRAME, vectorAt(3, 2, NaN, 0.0f), holeAt(3, 2)},
        {"an infinite vector", SMALL_FRAME, vectorAt(0, 2, INF, -INF), holeAt(0, 2)},
        {"a huge vector", SMALL_FRAME, vectorAt(0, 0, 1e30f, 1e30f), holeAt(0, 0)},
        {"vectors on the left half only",
         {0, 2, 0, 3},
         [](int, int) {
             return std::pair{1.0f, 0.0f};
         },
         [](int x, int y) {
             return x == 0   ? HOLE
                    : x == 1 ? smallValue(0, y)
                    : x == 2 ? mean(smallValue(1, y), smallValue(2, y))
                             : smallValue(x, y);
         }},
        {"vectors beyond the image",
         {-3, 8, -3, 6},
         [](int, int) {
             return std::pair{0.0f, 0.0f};
         },
         smallValue},
    };
    return cases;
}

} // namespace

// Each case with one and with two warps, on one tile and on tiles of two
// pixels; every tile of the frame gives the whole frame.
TEST(FwdWarpPxNode, WarpsSmallImagesAsWorkedOut) {
    auto const image = functionImage(SMALL_FRAME, smallValue);
    for (int tileSize : {2, 256})
        for (int nbWarps : {1, 2}) {
            TileSize const size(tileSize);
            Resources const resources(nbWarps, PLENTY);
            for (WarpCase const& c : warpCases()) {
                SCOPED_TRACE(std::string(c.what) + ", tiles of " + std::to_string(tileSize) + ", " +
                             std::to_string(nbWarps) + " warps");
                auto const warp = BtFwdWarpTool::createPxNode(image, vectorImage(c.vectorRgn, c.vectors));
                for (GePoint2<int> const& pixel : {GePoint2<int>{0, 0}, GePoint2<int>{3, 2}}) {
                    PxImageResult const result = evaluateTileAt(warp, pixel.x, pixel.y);
                    EXPECT_TRUE(result.getVI().isNonEmpty());
                    IxTile const expected =
                        makeTile(RGBA32, SMALL_FRAME, [&](int x, int y) { return c.expected(x, y); });
                    EXPECT_EQ(firstDifference(result.getTile(), expected, 1e-6f), "");
                }
            }
        }
}

TEST(FwdWarpPxNode, AlphaImagesStayAlpha) {
    auto const image = functionImage(SMALL_FRAME,
                                     [](int x, int y) {
                                         return Rgba{0, 0, 0, float(x + 10 * y)};
                                     },
                                     {.comps = IxPixelFormat::ALPHA});
    auto const warp = BtFwdWarpTool::createPxNode(image, vectorImage(SMALL_FRAME, [](int, int) {
                                                      return std::pair{0.5f, 0.0f};
                                                  }));
    PxImageResult const result = evaluateTileAt(warp, 0, 0);
    ASSERT_EQ(result.getPixelFormat(), ALPHA32);
    IxReadGuard const out = result.getTileGuard();
    float const row[] = {10, 10.5f, 11.5f, 12.5f};
    for (int x = 0; x < 4; ++x)
        EXPECT_EQ(IxPixelUtil::getPixelColor(out, x, 1).a, row[x]) << x;
}

TEST(FwdWarpPxNode, FormatIsFloatAlphaOrRgba) {
    struct Case {
        IxPixelFormat::Comps comps;
        IxPixelFormat::Depth depth;
        bool vectors;
        IxPixelFormat expected;
    };
    Case const cases[] = {
        {IxPixelFormat::ALPHA, IxPixelFormat::UINT8, true, ALPHA32},
        {IxPixelFormat::RGB, IxPixelFormat::UINT8, true, RGBA32},
        {IxPixelFormat::RGBA, IxPixelFormat::FLOAT16, true, RGBA32},
        {IxPixelFormat::RGB, IxPixelFormat::FLOAT16, false,
         IxPixelFormat(IxPixelFormat::RGB, IxPixelFormat::FLOAT16)},
    };
    for (Case const& c : cases) {
        auto const image = functionImage(SMALL_FRAME, smallValue, {.comps = c.comps, .depth = c.depth});
        auto const vectors = c.vectors ? vectorImage(SMALL_FRAME,
                                                     [](int, int) {
                                                         return std::pair{0.0f, 0.0f};
                                                     })
                                       : nothing();
        auto const warp = BtFwdWarpTool::createPxNode(image, vectors);
        EXPECT_EQ(warp->getImageFormat().getValue().getPixelFormat(), c.expected) << c.expected.dump();
        EXPECT_TRUE(warp->producesFullFrames());
    }
}

TEST(FwdWarpPxNode, TilesOutsideTheImageAreEmpty) {
    TileSize const size(2);
    auto const warp = BtFwdWarpTool::createPxNode(functionImage(SMALL_FRAME, smallValue),
                                                  vectorImage(SMALL_FRAME, [](int, int) {
                                                      return std::pair{0.0f, 0.0f};
                                                  }));
    EXPECT_TRUE(evaluateTileAt(warp, 4, 0).getPixelRegion().isEmpty());
    EXPECT_TRUE(evaluateTileAt(warp, -1, 1).getPixelRegion().isEmpty());
}

// Without vectors the image comes through whole, in its own format.
TEST(FwdWarpPxNode, MissingVectorsPassTheImage) {
    TileSize const size(2);
    auto const image = functionImage(SMALL_FRAME, smallValue, {.comps = IxPixelFormat::RGB});
    auto const warp = BtFwdWarpTool::createPxNode(image, nothing());
    PxImageResult const result = evaluateTileAt(warp, 3, 2);
    EXPECT_EQ(result.getPixelFormat(), IxPixelFormat(IxPixelFormat::RGB, IxPixelFormat::FLOAT32));
    EXPECT_EQ(firstDifference(result.getTile(), evaluateFrame(image), 0.0f), "");
    EXPECT_TRUE(result.getVI().isNonEmpty());

    auto const neither = BtFwdWarpTool::createPxNode(nothing(), nothing());
    EXPECT_TRUE(evaluateTileAt(neither, 0, 0).getPixelRegion().isEmpty());
}

// Bad vectors everywhere: all of them land in the band, the image is one
// hole, and nothing is written outside the accumulators.
TEST(FwdWarpPxNode, BadVectorsEverywhereLeaveAHole) {
    std::pair<float, float> const bad[] = {{NaN, NaN},  {INF, 0.0f},    {-INF, -INF}, {1e30f, -1e30f},
                                           {0.0f, NaN}, {-3e38f, 2.0f}, {NaN, INF}};
    GeRectangle<int> const frame{-5, 4, -3, 4};
    auto const warp = BtFwdWarpTool::createPxNode(
        functionImage(frame, smallValue),
        vectorImage(frame, [&](int x, int y) { return bad[(x + 5 + 3 * (y + 3)) % 7]; }));
    TileSize const size(4);
    PxImageResult const result = evaluateTileAt(warp, 0, 0);
    IxTile const holes = makeTile(RGBA32, frame, [](int, int) { return HOLE; });
    EXPECT_EQ(firstDifference(result.getTile(), holes, 0.0f), "");
}

namespace {

// The large image moved by the smooth field, the tile at the origin.
IxTile warpLarge() {
    auto const warp = BtFwdWarpTool::createPxNode(functionImage(LARGE_FRAME, largeValue),
                                                  vectorImage(LARGE_FRAME, smoothField));
    return evaluateTileAt(warp, 0, 0).getTile();
}

} // namespace

// Any number of warps, any tile size: the same image, but for the order of
// the sums.
TEST(FwdWarpPxNode, SameImageWhateverTheSplit) {
    IxTile reference;
    {
        Resources const one(1, PLENTY);
        reference = warpLarge();
    }
    ASSERT_EQ(reference.getPixelRegion(), LARGE_FRAME);
    struct Case {
        int tileSize;
        int nbWarps;
    };
    for (Case const& c : {Case{256, 2}, Case{256, 3}, Case{16, 1}, Case{16, 2}, Case{16, 3}, Case{5, 3}}) {
        SCOPED_TRACE(std::to_string(c.tileSize) + " / " + std::to_string(c.nbWarps));
        TileSize const size(c.tileSize);
        Resources const resources(c.nbWarps, PLENTY);
        EXPECT_EQ(firstDifference(warpLarge(), reference, 1e-5f), "");
    }
    // Not a constant image: the field moved things.
    IxTile const still = makeTile(RGBA32, LARGE_FRAME, largeValue);
    EXPECT_NE(firstDifference(reference, still, 1e-3f), "");
}

// A budget below one frame's 80 bytes a pixel still warps, with one warp.
TEST(FwdWarpPxNode, BudgetBelowOneFrameStillWarps) {
    Resources const tight(4, 100);
    EXPECT_EQ(BtWarpUtils::getNbFwdWarps(LARGE_FRAME), 1);
    IxTile const image = warpLarge();
    Resources const plenty(1, PLENTY);
    EXPECT_EQ(firstDifference(image, warpLarge(), 0.0f), "");
}

// Cancelled, the warp leaves by the cancellation and its requests with it;
// the node computes the next request as if nothing happened.
TEST(FwdWarpPxNode, ACancelledRequestLeavesByItsException) {
    Resources const resources(2, PLENTY);
    auto const warp = BtFwdWarpTool::createPxNode(functionImage(LARGE_FRAME, largeValue),
                                                  vectorImage(LARGE_FRAME, smoothField));
    EXPECT_THROW(evaluateTile(warp, PxImageContext(0.0, {0, 0}), true), PxEx::ExRequestCancelled);
    EXPECT_EQ(evaluateTileAt(warp, 0, 0).getPixelRegion(), LARGE_FRAME);
}
