// The proxy upscale: weights (0.8, 0.2) in each direction on small images,
// the scale on the values, odd starts and cut ends, the pyramid's depth, and
// the shared level arithmetic.
#include "assertions.h"
#include "btMotioLevels.h"
#include "btUpscaleProc.h"
#include "btUpscaleTool.h"
#include "motioTestSupport.h"

#include <climits>

using namespace Qv;
using namespace Qv::MotioTest;

namespace {

class UpscaleProxy : public MotioTestBase {};

// The outside colour the upscale reads its source with.
Rgba const OUTSIDE{0, 0, 0, 1};

} // namespace

TEST_F(UpscaleProxy, Log2CeilIsTheLevelsToOnePixel) {
    struct Case {
        int n, expected;
    } const cases[] = {{-5, 0},     {0, 0},      {1, 0},        {2, 1},       {3, 2},     {4, 2},
                       {5, 3},      {8, 3},      {9, 4},        {1080, 11},   {2048, 11}, {2049, 12},
                       {65536, 16}, {65537, 17}, {1 << 30, 30}, {INT_MAX, 31}};
    for (Case const& c : cases)
        EXPECT_EQ(BtMotioLevels::log2ceil(c.n), c.expected) << c.n;
}

TEST_F(UpscaleProxy, AConstantImageStaysConstantInsideAndMeetsTheOutsideAtItsBorder) {
    // 8 x 8 at full size, 4 x 4 one level up.
    GeRectangle<int> const region{-4, 4, -4, 4};
    Rgba const c{0.3f, -0.5f, 0.25f, 1};
    IxTile const out = evaluateFrame(BtUpscaleTool::createPxNode(constantImage(region, c), 1.0));
    ASSERT_EQ(out.getPixelRegion(), region);
    for (int y = -3; y < 3; ++y)
        for (int x = -3; x < 3; ++x)
            EXPECT_TRUE(near(pixelAt(out, x, y), c)) << x << ", " << y;
    // At the border a fifth of each direction comes from outside: (0, 0, 0, 1).
    auto mix = [&](float inside) {
        return Rgba{inside * c.r + (1 - inside) * OUTSIDE.r, inside * c.g + (1 - inside) * OUTSIDE.g,
                    inside * c.b + (1 - inside) * OUTSIDE.b, inside * c.a + (1 - inside) * OUTSIDE.a};
    };
    EXPECT_TRUE(near(pixelAt(out, -4, 0), mix(0.8f)));
    EXPECT_TRUE(near(pixelAt(out, 3, -1), mix(0.8f)));
    EXPECT_TRUE(near(pixelAt(out, 0, 3), mix(0.8f)));
    EXPECT_TRUE(near(pixelAt(out, -4, -4), mix(0.64f)));
    EXPECT_TRUE(near(pixelAt(out, 3, 3), mix(0.64f)));
}

TEST_F(UpscaleProxy, AScaleOfTwoDoublesEveryComponent) {
    GeRectangle<int> const region{-8, 8, -6, 6};
    IxTile const out =
        evaluateFrame(BtUpscaleTool::createPxNode(constantImage(region, {1.5f, -0.75f, 0, 1}), 2.0));
    for (int y = -5; y < 5; ++y)
        for (int x = -7; x < 7; ++x)
            EXPECT_TRUE(near(pixelAt(out, x, y), Rgba{3.0f, -1.5f, 0, 2})) << x << ", " << y;
}

TEST_F(UpscaleProxy, OddStartsAndCutEndsTakeTheirSideOfEachPair) {
    // Full size [-3, 5) x [-1, 5): the first column and row are the second
    // of their pairs, the last ones the first of theirs. One level up the
    // image is [-2, 3) x [-1, 3), every neighbour inside, and pixel (x, y)
    // there is (x, y): destination column X reads 0.8 of X / 2 and 0.2 of
    // its neighbour on X's side, so even X gives X / 2 - 0.2, odd X gives
    // X / 2 - 0.3 (a (0.75, 0.25) filter would give X / 2 - 0.25 for both).
    GeRectangle<int> const region{-3, 5, -1, 5};
    PxStrongHndl<PxNode const> const ramp = functionImage(region, [](int x, int y) {
        return Rgba{float(x), float(y), 0, 1};
    });
    IxTile const out = evaluateFrame(BtUpscaleTool::createPxNode(ramp, 1.0));
    ASSERT_EQ(out.getPixelRegion(), region);
    auto expected = [](int v) { return 0.5f * v - (v % 2 == 0 ? 0.2f : 0.3f); };
    for (int y = region.y1; y < region.y2; ++y)
        for (int x = region.x1; x < region.x2; ++x)
            EXPECT_TRUE(near(pixelAt(out, x, y), Rgba{expected(x), expected(y), 0, 1})) << x << ", " << y;
}

TEST_F(UpscaleProxy, LevelsBeyondThePyramidHaveNoPixels) {
    // Smaller side 6: log2ceil is 3, so proxy 3 is the last level with pixels.
    GeRectangle<int> const region{-5, 5, -3, 3};
    PxStrongHndl<PxImageProtocol> const node =
        BtUpscaleTool::createPxNode(constantImage(region, {1, 1, 1, 1}), 1.0);
    EXPECT_FALSE(evaluateFrame(node, {.proxy = 3}).getPixelRegion().isEmpty());
    IxTile const beyond = evaluateFrame(node, {.proxy = 4});
    EXPECT_TRUE(!beyond.isValid() || beyond.getPixelRegion().isEmpty());
}

TEST_F(UpscaleProxy, TheSourceMustReachPastHalfTheDestination) {
    IxTile const out(RGBA32, {0, 5, 0, 4});
    // ceil(5 / 2) = 3 columns need 5; ceil(4 / 2) = 2 rows need 4.
    EXPECT_NO_THROW(BtUpscaleProc(IxWriteGuard(out), {-1, 4, -1, 3}, 1.0f));
    try {
        BtUpscaleProc(IxWriteGuard(out), {-1, 3, -1, 3}, 1.0f);
        ADD_FAILURE() << "a source one column short was taken";
    } catch (AssertionsEx::ExAssertionFailed const& e) {
        EXPECT_NE(
            std::string(e.what()).find("FloatUtil::iceil( dstRgn.getWidth() /2.0f ) <= ( srcRgn.getWidth() "
                                       "-2 ) && FloatUtil::iceil( dstRgn.getHeight()/2.0f ) <= ( "
                                       "srcRgn.getHeight()-2 )"),
            std::string::npos)
            << e.what();
    }
}

TEST_F(UpscaleProxy, TileSizesGiveTheSamePixels) {
    GeRectangle<int> const region{-37, 35, -21, 30};
    PxStrongHndl<PxNode const> const source = functionImage(region, [](int x, int y, double, int p) {
        return Rgba{std::sin(0.37f * x) + 0.1f * y, std::cos(0.21f * y) - 0.05f * x, 0.01f * x * y, float(p)};
    });
    for (int proxy : {0, 1, 2}) {
        SCOPED_TRACE(testing::Message() << "proxy " << proxy);
        auto render = [&](int tileSize) {
            TileSize const grid(tileSize);
            return evaluateFrame(BtUpscaleTool::createPxNode(source, 2.0), {.proxy = proxy});
        };
        EXPECT_EQ(firstDifference(render(16), render(256), 0.0f), "");
    }
}
