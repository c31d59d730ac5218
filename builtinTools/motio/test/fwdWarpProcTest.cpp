// The forward warp's kernel and what surrounds it: the splat of one tile
// into accumulators, the number of warps, the strips, the sum of the
// accumulators and the division by the coverage.
#include "btFwdWarpProc.h"
#include "btWarpPxRequest.h"
#include "btWarpUtils.h"
#include "motioTestSupport.h"

#include <gtest/gtest.h>
#include <map>

using namespace Qv;
using namespace Qv::MotioTest;

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
        EXPECT_EQ(IxPixelUtil::getPixelColor(out, 1, 0), Rgba::ZERO) << "a hole";
        EXPECT_EQ(IxPixelUtil::getPixelColor(out, 2, 1), (Rgba{9.0f / 3, 1.0f, 0.5f, 1.0f}));
    }

    std::vector<IxTile> single{acc[1]}, singleCov{cov[1]};
    BtWarpUtils::accumulate(single, singleCov);
    EXPECT_EQ(IxPixelUtil::getPixelColor(IxReadGuard(single[0]), 0, 0), (Rgba{1, 0, 0.5f, 1}));
    EXPECT_EQ(failedAssertion([&] { BtWarpUtils::fwdWarpAccAndReturn(1, single, singleCov, rgn, RGBA32); }),
              "acc.size() > 1");
}
