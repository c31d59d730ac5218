// The forward warp: its splat, the sum and division around it, how many
// warps run at once, and the node over small images whose results are
// worked out by hand.
#include "assertions.h"
#include "btFwdWarpProc.h"
#include "btFwdWarpTool.h"
#include "btWarpPxRequest.h"
#include "btWarpUtils.h"
#include "ipSet.h"
#include "pxConfig.h"
#include "pxEmptyImageNode.h"
#include "pxEx.h"
#include "warpTestImage.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <map>

using namespace Qv;
using namespace Qv::WarpTest;

namespace {

constexpr float NaN = std::numeric_limits<float>::quiet_NaN();
constexpr float INF = std::numeric_limits<float>::infinity();
Rgba const HOLE = Rgba::ZERO;

struct TileSize {
    explicit TileSize(int size) { PxConfig::setTileSize(size, size); }
    ~TileSize() { PxConfig::setTileSize(PxConfig::DEFAULT_TILE_SIZE, PxConfig::DEFAULT_TILE_SIZE); }
};

// Another resource snapshot for the warps while it lives.
class Resources {
public:
    Resources(int nbProc, std::uint64_t budget) {
        BtWarpUtils::storeResourceConfig();
        _nbProc = BtWarpUtils::getNbProc();
        _budget = BtWarpUtils::getBufferBudget();
        BtWarpUtils::setResourceConfig(nbProc, budget);
    }
    ~Resources() { BtWarpUtils::setResourceConfig(_nbProc, _budget); }

private:
    int _nbProc = 0;
    std::uint64_t _budget = 0;
};

// Enough memory for any number of warps over the test images.
constexpr std::uint64_t PLENTY = std::uint64_t(1) << 40;

// The text of the assertion the call fails, "" when it passes.
template <class F>
std::string failedAssertion(F&& call) {
    try {
        call();
    } catch (AssertionsEx::ExAssertionFailed const& error) {
        return error.getReason();
    }
    return "";
}

IxTile makeTile(IxPixelFormat const& format, GeRectangle<int> const& region, PixelFn const& fn) {
    IxTile tile(format, region);
    IxWriteGuard const out(tile);
    for (int y = region.y1; y < region.y2; ++y)
        for (int x = region.x1; x < region.x2; ++x)
            IxPixelUtil::setPixelColor(out, x, y, fn(x, y));
    return tile;
}

IxTile zeroTile(IxPixelFormat const& format, GeRectangle<int> const& region) {
    return makeTile(format, region, [](int, int) { return Rgba::ZERO; });
}

IxPixelFormat const RGBA32(IxPixelFormat::RGBA, IxPixelFormat::FLOAT32);
IxPixelFormat const ALPHA32(IxPixelFormat::ALPHA, IxPixelFormat::FLOAT32);

} // namespace

TEST(BtFwdWarpProc, RefusesAccumulatorsOfAnotherFormat) {
    GeRectangle<int> const region{0, 4, 0, 4};
    struct Case {
        IxPixelFormat acc;
        IxPixelFormat cov;
        char const* failure;
    };
    Case const cases[] = {
        {RGBA32, ALPHA32, ""},
        {ALPHA32, ALPHA32, ""},
        {IxPixelFormat(IxPixelFormat::RGBA, IxPixelFormat::FLOAT16), ALPHA32,
         "accPFmt.getDepth() == IxPixelFormat::FLOAT32"},
        {RGBA32, IxPixelFormat(IxPixelFormat::ALPHA, IxPixelFormat::UINT8),
         "covPFmt.getDepth() == IxPixelFormat::FLOAT32"},
        {IxPixelFormat(IxPixelFormat::RGB, IxPixelFormat::FLOAT32), ALPHA32,
         "( accPFmt.getComps() == IxPixelFormat::ALPHA ) || ( accPFmt.getComps() == IxPixelFormat::RGBA )"},
        {RGBA32, RGBA32, "covPFmt.getComps() == IxPixelFormat::ALPHA"},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.acc.dump() + " / " + c.cov.dump());
        IxTile const acc(c.acc, region);
        IxTile const cov(c.cov, region);
        EXPECT_EQ(failedAssertion([&] { BtFwdWarpProc(acc, cov, 1.0f); }), c.failure);
    }
}

// The source may not start inside the band, but may end up to two pixels
// past the accumulators' end: the checks say so with a plus.
TEST(BtFwdWarpProc, ChecksTheSourceRegion) {
    GeRectangle<int> const dst{0, 10, 0, 10};
    IxTile const acc = zeroTile(RGBA32, dst);
    IxTile const cov = zeroTile(ALPHA32, dst);
    struct Case {
        GeRectangle<int> src;
        char const* failure;
    };
    Case const cases[] = {
        {{2, 8, 2, 8}, ""},
        {{2, 12, 2, 12}, ""},
        {{1, 5, 2, 5}, "srcRgn.x1() >= _dstRgn.x1() + 2"},
        {{2, 5, 1, 5}, "srcRgn.y1() >= _dstRgn.y1() + 2"},
        {{2, 13, 2, 5}, "srcRgn.x2() <= _dstRgn.x2() + 2"},
        {{2, 5, 2, 13}, "srcRgn.y2() <= _dstRgn.y2() + 2"},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.src.dump());
        IxTile const image = makeTile(RGBA32, c.src, [](int, int) { return Rgba{1, 1, 1, 1}; });
        IxTile const vectors = zeroTile(RGBA32, c.src);
        BtFwdWarpProc proc(acc, cov, 1.0f);
        EXPECT_EQ(failedAssertion([&] { proc.splat(IxReadGuard(image), IxReadGuard(vectors), c.src); }),
                  c.failure);
    }
}

// One source pixel, at (-2, -2) of accumulators over [-6, 4) both ways, so
// that the floor meets negative positions. The clamp bounds are -6 and 2.
TEST(BtFwdWarpProc, SplatsOnePixelOnItsFourNeighbours) {
    GeRectangle<int> const dst{-6, 4, -6, 4};
    GeRectangle<int> const src{-2, -1, -2, -1};
    Rgba const value{2.0f, 4.0f, 8.0f, 1.0f};
    using Weights = std::map<std::pair<int, int>, float>;
    struct Case {
        char const* what;
        float vx, vy, coef;
        Weights weights;
    };
    Case const cases[] = {
        {"still", 0.0f, 0.0f, 1.0f, {{{-2, -2}, 1.0f}}},
        {"a quarter right, half down",
         0.25f,
         0.5f,
         1.0f,
         {{{-2, -2}, 0.375f}, {{-2, -1}, 0.375f}, {{-1, -2}, 0.125f}, {{-1, -1}, 0.125f}}},
        {"the same by a coefficient of 2",
         0.125f,
         0.25f,
         2.0f,
         {{{-2, -2}, 0.375f}, {{-2, -1}, 0.375f}, {{-1, -2}, 0.125f}, {{-1, -1}, 0.125f}}},
        {"up and left to negative fractions",
         -1.25f,
         -0.5f,
         1.0f,
         {{{-4, -3}, 0.125f}, {{-4, -2}, 0.125f}, {{-3, -3}, 0.375f}, {{-3, -2}, 0.375f}}},
        {"half a pixel past the left bound", -4.5f, 0.0f, 1.0f, {{{-6, -2}, 1.0f}}},
        {"far right and down", 100.0f, 100.0f, 1.0f, {{{2, 2}, 1.0f}}},
        {"NaN", NaN, NaN, 1.0f, {{{-6, -6}, 1.0f}}},
        {"NaN across only", NaN, 0.5f, 1.0f, {{{-6, -2}, 0.5f}, {{-6, -1}, 0.5f}}},
        {"infinite", -INF, INF, 1.0f, {{{-6, 2}, 1.0f}}},
        {"huge", -1e30f, 3e38f, 1.0f, {{{-6, 2}, 1.0f}}},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.what);
        IxTile const acc = zeroTile(RGBA32, dst);
        IxTile const cov = zeroTile(ALPHA32, dst);
        IxTile const image = makeTile(RGBA32, src, [&](int, int) { return value; });
        IxTile const vectors = makeTile(RGBA32, src, [&](int, int) { return Rgba{c.vx, c.vy, 0.0f, 1.0f}; });
        {
            BtFwdWarpProc proc(acc, cov, c.coef);
            proc.splat(IxReadGuard(image), IxReadGuard(vectors), src);
        }
        IxReadGuard const a(acc);
        IxReadGuard const w(cov);
        for (int y = dst.y1; y < dst.y2; ++y)
            for (int x = dst.x1; x < dst.x2; ++x) {
                auto const found = c.weights.find({x, y});
                float const weight = found == c.weights.end() ? 0.0f : found->second;
                EXPECT_EQ(IxPixelUtil::getPixelColor(w, x, y).a, weight) << x << ", " << y;
                EXPECT_EQ(IxPixelUtil::getPixelColor(a, x, y),
                          (Rgba{value.r * weight, value.g * weight, value.b * weight, value.a * weight}))
                    << x << ", " << y;
            }
    }
}

// A vector tile smaller than the image moves only the pixels it covers.
TEST(BtFwdWarpProc, PixelsWithoutAVectorStayPut) {
    GeRectangle<int> const dst{0, 7, 0, 5};
    GeRectangle<int> const src{2, 5, 2, 3};
    IxTile const acc = zeroTile(ALPHA32, dst);
    IxTile const cov = zeroTile(ALPHA32, dst);
    IxTile const image = makeTile(ALPHA32, src, [](int x, int) { return Rgba{0, 0, 0, float(x)}; });
    IxTile const vectors = makeTile(RGBA32, {2, 3, 2, 3}, [](int, int) { return Rgba{1, 0, 0, 1}; });
    BtFwdWarpProc(acc, cov, 1.0f).splat(IxReadGuard(image), IxReadGuard(vectors), src);
    IxReadGuard const a(acc);
    IxReadGuard const w(cov);
    float const values[] = {0, 0, 0, 2 + 3, 4};
    float const weights[] = {0, 0, 0, 2, 1};
    for (int x = 0; x < 5; ++x) {
        EXPECT_EQ(IxPixelUtil::getPixelColor(a, x, 2).a, values[x]) << x;
        EXPECT_EQ(IxPixelUtil::getPixelColor(w, x, 2).a, weights[x]) << x;
    }
}

TEST(BtWarpUtils, NumberOfWarpsFollowsTheBudget) {
    GeRectangle<int> const frame{0, 100, 0, 100}; // 800,000 bytes a warp
    struct Case {
        GeRectangle<int> rgn;
        int nbProc;
        std::uint64_t budget;
        int expected;
    };
    Case const cases[] = {
        {frame, 4, 0, 1},
        {frame, 4, 799999, 1}, // less than one frame still gives one warp
        {frame, 4, 1599999, 1},
        {frame, 4, 1600000, 2},
        {frame, 8, 2400000, 3},
        {frame, 4, 80000000, 4},
        {frame, 1, PLENTY, 1},
        {{0, 100000, 0, 100000}, 4, 1600000000000ull, 2}, // 8e11 bytes a warp: 64-bit arithmetic
        {{0, 0, 0, 0}, 4, PLENTY, 1},
    };
    for (Case const& c : cases)
        EXPECT_EQ(BtWarpUtils::getNbFwdWarps(c.rgn, c.nbProc, c.budget), c.expected)
            << c.rgn.dump() << " " << c.nbProc << " " << c.budget;
    EXPECT_EQ(failedAssertion([&] { BtWarpUtils::getNbFwdWarps(frame, 0, PLENTY); }), "nbProc != 0");
    Resources const none(0, PLENTY);
    EXPECT_EQ(failedAssertion([&] { BtWarpUtils::getNbFwdWarps(frame); }), "nbProc != 0");
}

TEST(BtWarpUtils, StripsOfRowsCoverTheRegionOnce) {
    struct Case {
        GeRectangle<int> rgn;
        int count;
    };
    for (Case const& c : {Case{{0, 3, -2, 5}, 1}, Case{{0, 3, -2, 5}, 3}, Case{{0, 3, -2, 5}, 7},
                          Case{{0, 3, 0, 5}, 4}, Case{{0, 3, 0, 2}, 5}}) {
        int next = c.rgn.y1;
        int const rows = (c.rgn.getHeight() + c.count - 1) / c.count;
        for (int k = 0; k < c.count; ++k) {
            GeRectangle<int> const strip = BtWarpPxRequest::getStrip(c.rgn, k, c.count);
            EXPECT_EQ(strip.x1, c.rgn.x1);
            EXPECT_EQ(strip.x2, c.rgn.x2);
            EXPECT_EQ(strip.y1, next) << k;
            EXPECT_LE(strip.getHeight(), rows);
            EXPECT_GE(strip.getHeight(), 0);
            next = strip.y2;
        }
        EXPECT_EQ(next, c.rgn.y2);
    }
}

// acc / cov per component, alpha too; zero where the coverage is zero,
// whatever the accumulator holds there.
TEST(BtWarpUtils, ReturnDividesByTheCoverage) {
    GeRectangle<int> const accRgn{-2, 5, -2, 3};
    GeRectangle<int> const rgn{0, 3, 0, 1};
    Rgba const accValues[] = {{1, 2, 3, 4}, {2, 4, 6, 8}, {1, 1, 1, 1}};
    float const coverage[] = {0.0f, 2.0f, 0.5f};
    Rgba const expected[] = {{0, 0, 0, 0}, {1, 2, 3, 4}, {2, 2, 2, 2}};
    for (IxPixelFormat const& format : {RGBA32, ALPHA32})
        for (int nbProc : {1, 2, 4}) {
            SCOPED_TRACE(format.dump() + " in " + std::to_string(nbProc));
            IxTile const acc = makeTile(format, accRgn, [&](int x, int y) {
                return rgn.contains(x, y) ? accValues[x] : Rgba{9, 9, 9, 9};
            });
            IxTile const cov = makeTile(ALPHA32, accRgn, [&](int x, int y) {
                return Rgba{0, 0, 0, rgn.contains(x, y) ? coverage[x] : 1.0f};
            });
            IxTile const out = BtWarpUtils::fwdWarpReturn(nbProc, acc, cov, rgn, format);
            ASSERT_EQ(out.getPixelRegion(), rgn);
            ASSERT_EQ(out.getPixelFormat(), format);
            IxReadGuard const guard(out);
            for (int x = 0; x < 3; ++x) {
                Rgba const want =
                    format.getComps() == IxPixelFormat::ALPHA ? Rgba{0, 0, 0, expected[x].a} : expected[x];
                EXPECT_EQ(IxPixelUtil::getPixelColor(guard, x, 0), want) << x;
            }
        }
}

// Summing in place then dividing gives what the one-pass form gives, and
// one pair of accumulators is left as it is.
TEST(BtWarpUtils, AccumulateSumsEveryPair) {
    GeRectangle<int> const region{-2, 6, -2, 5};
    GeRectangle<int> const rgn{0, 4, 0, 3};
    std::vector<IxTile> acc, cov;
    for (int j = 0; j < 3; ++j) {
        acc.push_back(makeTile(RGBA32, region, [j](int x, int y) {
            return Rgba{float(j + x), float(y), 0.5f * j, 1.0f};
        }));
        cov.push_back(makeTile(ALPHA32, region, [j](int x, int) {
            return Rgba{0, 0, 0, x == 1 ? 0.0f : 0.5f * (j + 1)};
        }));
    }
    IxTile const onePass = BtWarpUtils::fwdWarpAccAndReturn(2, acc, cov, rgn, RGBA32);
    BtWarpUtils::accumulate(acc, cov);
    {
        IxReadGuard const a(acc[0]);
        IxReadGuard const w(cov[0]);
        EXPECT_EQ(IxPixelUtil::getPixelColor(a, 3, 2), (Rgba{3 + 4 + 5, 6, 1.5f, 3}));
        EXPECT_EQ(IxPixelUtil::getPixelColor(w, -2, -2).a, 3.0f);
        EXPECT_EQ(IxPixelUtil::getPixelColor(w, 1, 0).a, 0.0f);
    }
    IxTile const twoSteps = BtWarpUtils::fwdWarpReturn(3, acc[0], cov[0], rgn, RGBA32);
    EXPECT_EQ(firstDifference(onePass, twoSteps, 0.0f), "");
    {
        IxReadGuard const out(twoSteps);
        EXPECT_EQ(IxPixelUtil::getPixelColor(out, 1, 0), HOLE);
        EXPECT_EQ(IxPixelUtil::getPixelColor(out, 2, 1), (Rgba{9.0f / 3, 1.0f, 0.5f, 1.0f}));
    }

    std::vector<IxTile> single{acc[1]}, singleCov{cov[1]};
    BtWarpUtils::accumulate(single, singleCov);
    EXPECT_EQ(IxPixelUtil::getPixelColor(IxReadGuard(single[0]), 0, 0), (Rgba{1, 0, 0.5f, 1}));
    EXPECT_EQ(failedAssertion([&] { BtWarpUtils::fwdWarpAccAndReturn(1, single, singleCov, rgn, RGBA32); }),
              "acc.size() > 1");
}

namespace {

// The test image: 4 by 3 pixels from (0, 0), each of its own value.
GeRectangle<int> const FRAME{0, 4, 0, 3};
Rgba value(int x, int y) {
    return {float(x + 10 * y), float(1 + y), 0.5f, 1.0f};
}
Rgba mean(Rgba const& a, Rgba const& b) {
    return {(a.r + b.r) / 2, (a.g + b.g) / 2, (a.b + b.b) / 2, (a.a + b.a) / 2};
}

using VectorFn = std::function<std::pair<float, float>(int x, int y)>;

// A vector at one pixel, none elsewhere.
VectorFn at(int px, int py, float vx, float vy) {
    return [=](int x, int y) { return x == px && y == py ? std::pair{vx, vy} : std::pair{0.0f, 0.0f}; };
}
// The image with a hole at one pixel.
PixelFn holeAt(int px, int py) {
    return [=](int x, int y) { return x == px && y == py ? HOLE : value(x, y); };
}

struct WarpCase {
    char const* what;
    GeRectangle<int> vectorRgn;
    VectorFn vectors;
    PixelFn expected;
};

std::vector<WarpCase> const& warpCases() {
    static std::vector<WarpCase> const cases = {
        {"zero field", FRAME,
         [](int, int) {
             return std::pair{0.0f, 0.0f};
         },
         value},
        {"half a pixel right", FRAME,
         [](int, int) {
             return std::pair{0.5f, 0.0f};
         },
         [](int x, int y) { return x == 0 ? value(x, y) : mean(value(x - 1, y), value(x, y)); }},
        {"half a pixel up", FRAME,
         [](int, int) {
             return std::pair{0.0f, -0.5f};
         },
         [](int x, int y) { return y == 2 ? value(x, y) : mean(value(x, y), value(x, y + 1)); }},
        {"one pixel right", FRAME,
         [](int, int) {
             return std::pair{1.0f, 0.0f};
         },
         [](int x, int y) { return x == 0 ? HOLE : value(x - 1, y); }},
        {"one pixel sent far right", FRAME, at(1, 1, 100.0f, 0.0f), holeAt(1, 1)},
        {"one pixel sent far up and left", FRAME, at(2, 0, -100.0f, -100.0f), holeAt(2, 0)},
        {"one pixel sent just past the bottom", FRAME, at(3, 1, 0.0f, 2.0f), holeAt(3, 1)},
        {"a column converging on the next", FRAME,
         [](int x, int) {
             return x == 1 ? std::pair{1.0f, 0.0f} : std::pair{0.0f, 0.0f};
         },
         [](int x, int y) { return x == 1   ? HOLE
                                   : x == 2 ? mean(value(1, y), value(2, y))
                                            : value(x, y); }},
        {"a NaN vector", FRAME, at(1, 1, NaN, NaN), holeAt(1, 1)},
        {"a NaN across only", FRAME, at(3, 2, NaN, 0.0f), holeAt(3, 2)},
        {"an infinite vector", FRAME, at(0, 2, INF, -INF), holeAt(0, 2)},
        {"a huge vector", FRAME, at(0, 0, 1e30f, 1e30f), holeAt(0, 0)},
        {"vectors on the left half only",
         {0, 2, 0, 3},
         [](int, int) {
             return std::pair{1.0f, 0.0f};
         },
         [](int x, int y) {
             return x == 0   ? HOLE
                    : x == 1 ? value(0, y)
                    : x == 2 ? mean(value(1, y), value(2, y))
                             : value(x, y);
         }},
        {"vectors beyond the image",
         {-3, 8, -3, 6},
         [](int, int) {
             return std::pair{0.0f, 0.0f};
         },
         value},
    };
    return cases;
}

} // namespace

// Each case with one and with two warps, on one tile and on tiles of two
// pixels; every tile of the frame gives the whole frame.
TEST(FwdWarpPxNode, WarpsSmallImagesAsWorkedOut) {
    auto const image = makeImage(FRAME, value);
    for (int tileSize : {2, 256})
        for (int nbWarps : {1, 2}) {
            TileSize const size(tileSize);
            Resources const resources(nbWarps, PLENTY);
            for (WarpCase const& c : warpCases()) {
                SCOPED_TRACE(std::string(c.what) + ", tiles of " + std::to_string(tileSize) + ", " +
                             std::to_string(nbWarps) + " warps");
                auto const warp = BtFwdWarpTool::createPxNode(image, makeVectors(c.vectorRgn, c.vectors));
                for (GePoint2<int> const& pixel : {GePoint2<int>{0, 0}, GePoint2<int>{3, 2}}) {
                    PxImageResult const result = evaluateTileAt(warp, pixel.x, pixel.y);
                    EXPECT_TRUE(result.getVI().isNonEmpty());
                    IxTile const expected =
                        makeTile(RGBA32, FRAME, [&](int x, int y) { return c.expected(x, y); });
                    EXPECT_EQ(firstDifference(result.getTile(), expected, 1e-6f), "");
                }
            }
        }
}

TEST(FwdWarpPxNode, AlphaImagesStayAlpha) {
    auto const image = makeImage(
        FRAME,
        [](int x, int y) {
            return Rgba{0, 0, 0, float(x + 10 * y)};
        },
        IxPixelFormat::ALPHA);
    auto const warp = BtFwdWarpTool::createPxNode(image, makeVectors(FRAME, [](int, int) {
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
        auto const image = makeNode<FunctionImageNode>(FRAME, value, c.comps, Rgba::ZERO, c.depth);
        auto const vectors = c.vectors ? makeVectors(FRAME,
                                                     [](int, int) {
                                                         return std::pair{0.0f, 0.0f};
                                                     })
                                       : makeNode<PxEmptyImageNode>();
        auto const warp = BtFwdWarpTool::createPxNode(image, vectors);
        EXPECT_EQ(warp->getImageFormat().getValue().getPixelFormat(), c.expected) << c.expected.dump();
        EXPECT_TRUE(warp->producesFullFrames());
    }
}

TEST(FwdWarpPxNode, TilesOutsideTheImageAreEmpty) {
    TileSize const size(2);
    auto const warp = BtFwdWarpTool::createPxNode(makeImage(FRAME, value), makeVectors(FRAME, [](int, int) {
                                                      return std::pair{0.0f, 0.0f};
                                                  }));
    EXPECT_TRUE(evaluateTileAt(warp, 4, 0).getPixelRegion().isEmpty());
    EXPECT_TRUE(evaluateTileAt(warp, -1, 1).getPixelRegion().isEmpty());
}

// Without vectors the image comes through whole, in its own format.
TEST(FwdWarpPxNode, MissingVectorsPassTheImage) {
    TileSize const size(2);
    auto const image = makeImage(FRAME, value, IxPixelFormat::RGB);
    auto const warp = BtFwdWarpTool::createPxNode(image, makeNode<PxEmptyImageNode>());
    PxImageResult const result = evaluateTileAt(warp, 3, 2);
    EXPECT_EQ(result.getPixelFormat(), IxPixelFormat(IxPixelFormat::RGB, IxPixelFormat::FLOAT32));
    EXPECT_EQ(firstDifference(result.getTile(), evaluateFrame(image), 0.0f), "");
    EXPECT_TRUE(result.getVI().isNonEmpty());

    auto const nothing =
        BtFwdWarpTool::createPxNode(makeNode<PxEmptyImageNode>(), makeNode<PxEmptyImageNode>());
    EXPECT_TRUE(evaluateTileAt(nothing, 0, 0).getPixelRegion().isEmpty());
}

// Bad vectors everywhere: all of them land in the band, the image is one
// hole, and nothing is written outside the accumulators.
TEST(FwdWarpPxNode, BadVectorsEverywhereLeaveAHole) {
    std::pair<float, float> const bad[] = {{NaN, NaN},  {INF, 0.0f},    {-INF, -INF}, {1e30f, -1e30f},
                                           {0.0f, NaN}, {-3e38f, 2.0f}, {NaN, INF}};
    GeRectangle<int> const frame{-5, 4, -3, 4};
    auto const warp = BtFwdWarpTool::createPxNode(
        makeImage(frame, value),
        makeVectors(frame, [&](int x, int y) { return bad[(x + 5 + 3 * (y + 3)) % 7]; }));
    TileSize const size(4);
    PxImageResult const result = evaluateTileAt(warp, 0, 0);
    IxTile const holes = makeTile(RGBA32, frame, [](int, int) { return HOLE; });
    EXPECT_EQ(firstDifference(result.getTile(), holes, 0.0f), "");
}

namespace {

// A larger image and a smooth field that moves pixels by up to a few pixels
// each way, across tile borders and off the frame.
GeRectangle<int> const LARGE{-17, 20, -9, 14};
Rgba largeValue(int x, int y) {
    return {std::sin(x * 0.3f) + 2.0f, std::cos(y * 0.2f) + 2.0f, 0.01f * float(x * y), 1.0f};
}
std::pair<float, float> smoothField(int x, int y) {
    return {3.0f * std::sin(float(x + y) / 5.0f), 2.5f * std::cos(float(x - y) / 4.0f)};
}

IxTile warpLarge() {
    auto const warp =
        BtFwdWarpTool::createPxNode(makeImage(LARGE, largeValue), makeVectors(LARGE, smoothField));
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
    ASSERT_EQ(reference.getPixelRegion(), LARGE);
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
    IxTile const still = makeTile(RGBA32, LARGE, largeValue);
    EXPECT_NE(firstDifference(reference, still, 1e-3f), "");
}

// A budget below one frame's 80 bytes a pixel still warps, with one warp.
TEST(FwdWarpPxNode, BudgetBelowOneFrameStillWarps) {
    Resources const tight(4, 100);
    EXPECT_EQ(BtWarpUtils::getNbFwdWarps(LARGE), 1);
    IxTile const image = warpLarge();
    Resources const plenty(1, PLENTY);
    EXPECT_EQ(firstDifference(image, warpLarge(), 0.0f), "");
}

// Cancelled, the warp leaves by the cancellation and its requests with it;
// the node computes the next request as if nothing happened.
TEST(FwdWarpPxNode, ACancelledRequestLeavesByItsException) {
    Resources const resources(2, PLENTY);
    auto const warp =
        BtFwdWarpTool::createPxNode(makeImage(LARGE, largeValue), makeVectors(LARGE, smoothField));
    EXPECT_THROW(evaluateTile(warp, PxImageContext(0.0, {0, 0}), true), PxEx::ExRequestCancelled);
    EXPECT_EQ(evaluateTileAt(warp, 0, 0).getPixelRegion(), LARGE);
}
