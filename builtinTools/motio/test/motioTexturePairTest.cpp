// The textured pairs the flow is measured on: frame 1 is frame 0 moved as
// stated, each proxy scale is the image reader's halving of the one below,
// the true flows and the interior are those worked out by hand, and the
// contrast is the one asked.
#include "motioTexturePair.h"

#include "ipScanlineUtil.h"

#include <cmath>
#include <gtest/gtest.h>

using namespace Qv;
using namespace Qv::MotioTest;

namespace {

// Frame 1 at (x, y) against frame 0 at match(x, y), wherever that lies in frame 0.
template <class Match>
void expectFrame1IsFrame0At(TexturePair const& pair, Match const& match) {
    TextureImage const frame0 = pair.render(0);
    TextureImage const frame1 = pair.render(1);
    int compared = 0;
    for (int y = 0; y < pair.getHeight(); ++y)
        for (int x = 0; x < pair.getWidth(); ++x) {
            auto const [mx, my] = match(x, y);
            if (mx < 0 || my < 0 || mx >= pair.getWidth() || my >= pair.getHeight())
                continue;
            ASSERT_NEAR(frame1.at(x, y), frame0.at(mx, my), 1e-6) << x << ", " << y;
            ++compared;
        }
    EXPECT_GT(compared, pair.getWidth() * pair.getHeight() / 2);
}

double standardDeviation(TextureImage const& image) {
    double sum = 0.0, squares = 0.0;
    for (float v : image.values) {
        sum += v;
        squares += double(v) * v;
    }
    double const n = double(image.values.size());
    return std::sqrt(squares / n - (sum / n) * (sum / n));
}

} // namespace

TEST(MotioTexturePair, AnIntegerShiftMovesEveryPixelByIt) {
    TexturePair const pair(96, 64, {3.0, -2.0, 0.0, 1.0}, CAMERA_STD);
    expectFrame1IsFrame0At(pair, [](int x, int y) { return std::pair{x - 3, y + 2}; });
}

TEST(MotioTexturePair, AQuarterTurnAboutTheCentreTurnsThePixelGrid) {
    // 64 x 64, centre (32, 32): T(x + 0.5, y + 0.5) = (63.5 - y, x + 0.5), so
    // pixel (x, y) of frame 0 is pixel (63 - y, x) of frame 1.
    TexturePair const pair(64, 64, {0.0, 0.0, 90.0, 1.0}, CAMERA_STD);
    expectFrame1IsFrame0At(pair, [](int x, int y) { return std::pair{y, 63 - x}; });
}

TEST(MotioTexturePair, NoMotionGivesTheSameFrameToTheBit) {
    TexturePair const pair(80, 60, {}, CAMERA_STD);
    EXPECT_EQ(pair.render(0).values, pair.render(1).values);
}

TEST(MotioTexturePair, EachProxyScaleIsTheReadersHalvingOfTheOneBelow) {
    // Low contrast, so that nothing is clipped; the host's own eight weights.
    TexturePair const pair(96, 80, {2.5, -1.25, 7.0, 1.1}, CAMERA_LOW_STD);
    float const* weights = IpScanlineUtil::getLanczos2Weights();
    for (int frame : {0, 1})
        for (int proxy : {1, 2, 3}) {
            int const width = 96 >> (proxy - 1), height = 80 >> (proxy - 1);
            TextureImage const below = pair.render(frame, proxy - 1, 0, width, 0, height);
            // The pixels whose eight by eight source pixels lie in `below`.
            TextureImage const level = pair.render(frame, proxy, 2, width / 2 - 2, 2, height / 2 - 2);
            for (int y = 2; y < height / 2 - 2; ++y)
                for (int x = 2; x < width / 2 - 2; ++x) {
                    double filtered = 0.0;
                    for (int j = 0; j < 8; ++j)
                        for (int i = 0; i < 8; ++i)
                            filtered +=
                                double(weights[j]) * weights[i] * below.at(2 * x - 3 + i, 2 * y - 3 + j);
                    ASSERT_NEAR(level.at(x, y), filtered, 2e-6)
                        << "frame " << frame << " proxy " << proxy << " at " << x << ", " << y;
                }
        }
}

TEST(MotioTexturePair, TheDeviationIsTheOneAskedAroundAHalf) {
    struct Case {
        double deviation;
    } const cases[] = {{CAMERA_STD}, {CAMERA_LOW_STD}};
    for (Case const& c : cases) {
        TextureImage const frame = TexturePair(640, 480, {}, c.deviation).render(0);
        double mean = 0.0;
        for (float v : frame.values)
            mean += v;
        mean /= double(frame.values.size());
        EXPECT_NEAR(mean, 0.5, 0.02) << c.deviation;
        EXPECT_NEAR(standardDeviation(frame), c.deviation, 0.15 * c.deviation);
    }
}

TEST(MotioTexturePair, TrueFlowsAtPixelCentres) {
    struct Case {
        int width, height;
        TextureMotion motion;
        int x, y;
        TextureFlow forward, backward;
    } const cases[] = {
        // A shift is the same everywhere, each way.
        {320, 240, {3.25, -1.5, 0.0, 1.0}, 7, 200, {3.25, -1.5}, {-3.25, 1.5}},
        // Zoom 1.05 about (160, 120) at (0.5, 0.5): forward 0.05 (p - c); backward (p - c) / 1.05 - (p - c).
        {320, 240, {0.0, 0.0, 0.0, 1.05}, 0, 0, {-7.975, -5.975}, {159.5 / 21, 119.5 / 21}},
        // Zoom 2 and shift (4, 0) about (10, 10) at (9.5, 9.5): T(p) = (13, 9), T^-1(p) = (7.75, 9.75).
        {20, 20, {4.0, 0.0, 0.0, 2.0}, 9, 9, {3.5, -0.5}, {-1.75, 0.25}},
        // A quarter turn about (32, 32) at (10.5, 0.5): T(p) = (63.5, 10.5), T^-1(p) = (0.5, 53.5).
        {64, 64, {0.0, 0.0, 90.0, 1.0}, 10, 0, {53.0, 10.0}, {-10.0, 53.0}},
    };
    for (Case const& c : cases) {
        TexturePair const pair(c.width, c.height, c.motion, CAMERA_STD);
        TextureFlow const forward = pair.forwardFlow(c.x, c.y);
        TextureFlow const backward = pair.backwardFlow(c.x, c.y);
        EXPECT_NEAR(forward.x, c.forward.x, 1e-9) << c.x << ", " << c.y;
        EXPECT_NEAR(forward.y, c.forward.y, 1e-9) << c.x << ", " << c.y;
        EXPECT_NEAR(backward.x, c.backward.x, 1e-9) << c.x << ", " << c.y;
        EXPECT_NEAR(backward.y, c.backward.y, 1e-9) << c.x << ", " << c.y;
    }
}

TEST(MotioTexturePair, TheInteriorKeepsPixelAndMatchSixteenInside) {
    TexturePair const pair(100, 80, {3.25, -1.5, 0.0, 1.0}, CAMERA_STD);
    struct Case {
        int frame, x, y;
        bool interior;
    } const cases[] = {
        {0, 15, 40, false}, {0, 16, 40, true}, {0, 80, 40, true}, {0, 81, 40, false}, // 81.5 + 3.25 > 84
        {0, 50, 16, false}, {0, 50, 17, true}, {0, 50, 63, true}, {0, 50, 64, false}, // 16.5 - 1.5 < 16
        {1, 18, 40, false}, {1, 19, 40, true}, {1, 83, 40, true}, {1, 84, 40, false}, // 18.5 - 3.25 < 16
        {1, 50, 15, false}, {1, 50, 16, true}, {1, 50, 62, true}, {1, 50, 63, false}, // 63.5 + 1.5 > 64
    };
    for (Case const& c : cases)
        EXPECT_EQ(pair.isInterior(c.frame, c.x, c.y), c.interior) << c.frame << ": " << c.x << ", " << c.y;
}

TEST(MotioTexturePair, TheErrorIsTheMeanDistanceToTheTruthOverTheInterior) {
    TexturePair const pair(100, 80, {0.0, 0.0, 3.0, 1.05}, CAMERA_STD);
    for (int frame : {0, 1}) {
        EXPECT_DOUBLE_EQ(
            pair.meanEndPointError(frame, [&](int x, int y) { return pair.trueFlow(frame, x, y); }), 0.0);
        // Off by (3, 4) inside, by anything outside: 5.
        EXPECT_NEAR(pair.meanEndPointError(frame,
                                           [&](int x, int y) {
                                               if (!pair.isInterior(frame, x, y))
                                                   return TextureFlow{1e9, 1e9};
                                               TextureFlow const t = pair.trueFlow(frame, x, y);
                                               return TextureFlow{t.x + 3.0, t.y - 4.0};
                                           }),
                    5.0, 1e-9);
    }
}
