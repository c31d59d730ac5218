// The backward warp: each pixel of the vector image reads the image at its
// own position moved by its vector, bilinearly, and the image's fill colour
// beyond its pixels.
#include "btBwdWarpTool.h"
#include "motioTestSupport.h"
#include "pxEx.h"

#include <cmath>
#include <gtest/gtest.h>

using namespace Qv;
using namespace Qv::MotioTest;

namespace {

// What the small image shows outside its pixels.
Rgba const FILL{0.25f, 0.5f, 0.75f, 0.0f};

VectorFn constant(float vx, float vy) {
    return [=](int, int) { return std::pair{vx, vy}; };
}
// The image with the fill colour at one pixel.
PixelFn fillAt(int px, int py) {
    return [=](int x, int y) { return x == px && y == py ? FILL : smallValue(x, y); };
}

} // namespace

TEST(BwdWarpPxNode, WarpsSmallImagesAsWorkedOut) {
    WarpCase const cases[] = {
        {"zero field", SMALL_FRAME, constant(0, 0), smallValue},
        {"one pixel right", SMALL_FRAME, constant(1, 0),
         [](int x, int y) { return x == 3 ? FILL : smallValue(x + 1, y); }},
        {"one pixel up", SMALL_FRAME, constant(0, -1),
         [](int x, int y) { return y == 0 ? FILL : smallValue(x, y - 1); }},
        {"half a pixel right", SMALL_FRAME, constant(0.5f, 0),
         [](int x, int y) {
             return x == 3 ? mean(smallValue(3, y), FILL) : mean(smallValue(x, y), smallValue(x + 1, y));
         }},
        {"a quarter left, a quarter down", SMALL_FRAME, vectorAt(1, 1, -0.25f, 0.25f),
         [](int x, int y) {
             if (x != 1 || y != 1)
                 return smallValue(x, y);
             // 9/16 of (1, 1), 3/16 of (0, 1) and of (1, 2), 1/16 of (0, 2).
             Rgba const a = smallValue(0, 1), b = smallValue(1, 1), c = smallValue(0, 2),
                        d = smallValue(1, 2);
             auto mix = [](float a, float b, float c, float d) {
                 return 0.75f * (0.25f * a + 0.75f * b) + 0.25f * (0.25f * c + 0.75f * d);
             };
             return Rgba{mix(a.r, b.r, c.r, d.r), mix(a.g, b.g, c.g, d.g), mix(a.b, b.b, c.b, d.b),
                         mix(a.a, b.a, c.a, d.a)};
         }},
        {"a NaN vector", SMALL_FRAME, vectorAt(1, 1, NaN, NaN), fillAt(1, 1)},
        {"a NaN down only", SMALL_FRAME, vectorAt(2, 0, 0.0f, NaN), fillAt(2, 0)},
        {"an infinite vector", SMALL_FRAME, vectorAt(0, 2, INF, -INF), fillAt(0, 2)},
        {"minus infinity", SMALL_FRAME, vectorAt(3, 0, -INF, 0.0f), fillAt(3, 0)},
        {"a huge vector", SMALL_FRAME, vectorAt(3, 2, 1e30f, -3e38f), fillAt(3, 2)},
        {"vectors on part of the image",
         {1, 3, 0, 2},
         constant(1, 0),
         [](int x, int y) { return smallValue(x + 1, y); }},
        {"vectors beyond the image",
         {-2, 6, -1, 4},
         constant(0, 0),
         [](int x, int y) { return SMALL_FRAME.contains(x, y) ? smallValue(x, y) : FILL; }},
    };
    auto const image = functionImage(SMALL_FRAME, smallValue, {.fill = FILL});
    for (int tileSize : {2, 256}) {
        TileSize const size(tileSize);
        for (WarpCase const& c : cases) {
            SCOPED_TRACE(std::string(c.what) + ", tiles of " + std::to_string(tileSize));
            auto const warp = BtBwdWarpTool::createPxNode(image, vectorImage(c.vectorRgn, c.vectors));
            IxTile const out = evaluateFrame(warp);
            IxTile const expected = makeTile(RGBA32, c.vectorRgn, c.expected);
            EXPECT_EQ(firstDifference(out, expected, 1e-6f), "");
            EXPECT_TRUE(evaluateTileAt(warp, c.vectorRgn.x1, c.vectorRgn.y1).getVI().isNonEmpty());
        }
    }
}

TEST(BwdWarpPxNode, KeepsTheImagesFormat) {
    auto const image = functionImage(SMALL_FRAME,
                                     [](int x, int y) {
                                         return Rgba{0, 0, 0, float(x + 10 * y)};
                                     },
                                     {.comps = IxPixelFormat::ALPHA});
    auto const warp = BtBwdWarpTool::createPxNode(image, vectorImage(SMALL_FRAME, constant(0, 1)));
    IxTile const out = evaluateFrame(warp);
    ASSERT_EQ(out.getPixelFormat(), ALPHA32);
    IxReadGuard const guard(out);
    for (int x = 0; x < 4; ++x) {
        EXPECT_EQ(IxPixelUtil::getPixelColor(guard, x, 0).a, float(x + 10));
        EXPECT_EQ(IxPixelUtil::getPixelColor(guard, x, 2).a, 0.0f) << "the fill below the image";
    }
}

// Either input missing, or an image without pixels: the image's own tile.
TEST(BwdWarpPxNode, WithoutBothInputsGivesTheImage) {
    TileSize const size(2);
    auto const image = functionImage(SMALL_FRAME, smallValue, {.comps = IxPixelFormat::RGB});
    auto const vectors = vectorImage(SMALL_FRAME, constant(1, 1));
    auto const empty = nothing();
    auto const noVectors = BtBwdWarpTool::createPxNode(image, empty);
    EXPECT_EQ(firstDifference(evaluateFrame(noVectors), evaluateFrame(image), 0.0f), "");
    EXPECT_EQ(firstDifference(evaluateTileAt(noVectors, 2, 2).getTile(),
                              evaluateTileAt(image, 2, 2).getTile(), 0.0f),
              "");

    auto const noImage = BtBwdWarpTool::createPxNode(empty, vectors);
    EXPECT_TRUE(evaluateTileAt(noImage, 0, 0).getPixelRegion().isEmpty());

    auto const noPixels = BtBwdWarpTool::createPxNode(functionImage({3, 3, 1, 1}, smallValue), vectors);
    EXPECT_TRUE(evaluateTileAt(noPixels, 0, 0).getPixelRegion().isEmpty());
}

// The lookups go through the image's tiles: tiles of 16 and of 256 pixels
// give the same image.
TEST(BwdWarpPxNode, SameImageWhateverTheTileSize) {
    auto const image = functionImage(LARGE_FRAME, largeValue);
    auto const warp = BtBwdWarpTool::createPxNode(image, vectorImage(LARGE_FRAME, smoothField));
    IxTile reference;
    {
        TileSize const size(256);
        reference = evaluateFrame(warp);
    }
    for (int tileSize : {16, 5}) {
        TileSize const size(tileSize);
        EXPECT_EQ(firstDifference(evaluateFrame(warp), reference, 1e-6f), "") << tileSize;
    }
    EXPECT_EQ(reference.getPixelRegion(), LARGE_FRAME);
    EXPECT_NE(firstDifference(reference, evaluateFrame(image), 1e-3f), "") << "the field moved things";
}

TEST(BwdWarpPxNode, ACancelledRequestLeavesByItsException) {
    auto const warp = BtBwdWarpTool::createPxNode(functionImage(SMALL_FRAME, smallValue),
                                                  vectorImage(SMALL_FRAME, constant(1, 0)));
    EXPECT_THROW(evaluateTile(warp, PxImageContext(0.0, {0, 0}), true), PxEx::ExRequestCancelled);
    EXPECT_EQ(evaluateTileAt(warp, 0, 0).getPixelRegion(), SMALL_FRAME);
}

// Half-float images and vectors go through the conversions instead of being
// read and written in place, and warp as their float forms do: here every
// value, the output's too, is exact in halves.
TEST(BwdWarpPxNode, HalfFloatImagesAndVectorsWarpAsFloatOnes) {
    PixelFn const ramp = [](int x, int y) { return Rgba{float(x), float(y), 0.5f, 1.0f}; };
    VectorFn const field = [](int x, int y) {
        return std::pair{0.5f * float((x + 20) % 3) - 0.5f, 0.25f * float((y + 10) % 4) - 0.25f};
    };
    auto vectorsIn = [&](IxPixelFormat::Comps comps, IxPixelFormat::Depth depth) {
        return functionImage(LARGE_FRAME,
                             [&](int x, int y) {
                                 auto const [vx, vy] = field(x, y);
                                 return Rgba{vx, vy, 0.0f, 1.0f};
                             },
                             {.comps = comps, .depth = depth});
    };
    auto const floats = BtBwdWarpTool::createPxNode(functionImage(LARGE_FRAME, ramp, {.fill = FILL}),
                                                    vectorImage(LARGE_FRAME, field));
    auto const halves = BtBwdWarpTool::createPxNode(
        functionImage(LARGE_FRAME, ramp, {.fill = FILL, .depth = IxPixelFormat::FLOAT16}),
        vectorsIn(IxPixelFormat::RGB, IxPixelFormat::FLOAT16));
    for (int tileSize : {5, 256}) {
        TileSize const size(tileSize);
        IxTile const expected = evaluateFrame(floats);
        IxTile const got = evaluateFrame(halves);
        EXPECT_EQ(got.getPixelFormat(), IxPixelFormat(IxPixelFormat::RGBA, IxPixelFormat::FLOAT16));
        EXPECT_EQ(firstDifference(got, expected, 0.0f), "") << "tiles of " << tileSize;
        // The ramp moved by the field, within the image.
        IxReadGuard const guard(expected);
        EXPECT_EQ(IxPixelUtil::getPixelColor(guard, 1, 2), (Rgba{0.5f, 1.75f, 0.5f, 1.0f}));
    }
}
