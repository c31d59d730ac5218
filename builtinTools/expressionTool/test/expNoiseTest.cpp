// The noise generator: corner values at lattice points, smoothness between
// them, a per-thread cache that never changes a result, and the orders of
// turbulence.
#include "btNoiseGenerator.h"
#include "expTestSupport.h"

#include <cmath>
#include <limits>
#include <thread>

using namespace Qv;
using Qv::ExpTest::evaluate;

namespace {
using Sample = BtNoiseGenerator::Sample;
constexpr std::uint32_t VALUE_PRIMES[3] = {103, 107, 109};
} // namespace

TEST(NoiseGenerator, HashIsTheLatticeFormulaInSinglePrecision) {
    // At the origin a is 0, n is 0 and m is (-771171059) & 0x7fffffff, worked out by hand.
    EXPECT_EQ(BtNoiseGenerator::hash(0, 0, 0, 103, 107, 109), 1.0f - 1376312589.0f * 9.313226e-10f);
    for (int i = -50; i <= 50; ++i) {
        float const h = BtNoiseGenerator::hash(i, 2 * i, -i, 67, 59, 71);
        EXPECT_GT(h, -1.0f);
        EXPECT_LE(h, 1.0f);
    }
    EXPECT_NE(BtNoiseGenerator::hash(1, 0, 0, 67, 59, 71), BtNoiseGenerator::hash(0, 1, 0, 67, 59, 71));
}

TEST(NoiseGenerator, AtLatticePointsTheValueIsTheCornersAndBetweenItIsSmooth) {
    for (int i : {-7, -1, 0, 1, 3, 1000}) {
        Sample const s = BtNoiseGenerator::computeNoise(static_cast<float>(i), 2.0f, -3.0f);
        EXPECT_EQ(s[BtNoiseGenerator::VALUE],
                  BtNoiseGenerator::hash(i, 2, -3, VALUE_PRIMES[0], VALUE_PRIMES[1], VALUE_PRIMES[2]))
            << i;
        EXPECT_EQ(s[BtNoiseGenerator::GRADIENT_X], BtNoiseGenerator::hash(i, 2, -3, 67, 59, 71)) << i;
    }
    // Continuous across a cell border: both sides meet the corner's value.
    for (float x : {0.999999f, 1.000001f})
        EXPECT_NEAR(BtNoiseGenerator::computeNoise(x, 0.0f, 0.0f)[3],
                    BtNoiseGenerator::computeNoise(1.0f, 0.0f, 0.0f)[3], 1e-4);
    // noise(3) through the language is the corner at (3, 0, 0), widened.
    EXPECT_EQ(evaluate("noise(3)").values[0],
              static_cast<double>(BtNoiseGenerator::hash(3, 0, 0, 103, 107, 109)));
}

TEST(NoiseGenerator, TheCacheGivesWhatTheComputationGivesOnEveryThread) {
    // The origin first, on fresh threads: an empty cache must not pass for a sample there.
    std::vector<std::array<float, 3>> const points = {
        {0, 0, 0},         {0, 0, 0},         {0.5f, 0, 0},
        {0.5f, 0, 0},      {0, 0, 0},         {-0.0f, 0, 0},
        {1.25f, -3.5f, 7}, {1.25f, -3.5f, 7}, {std::numeric_limits<float>::quiet_NaN(), 0, 0}};
    auto run = [&points](int shift, bool& same) {
        same = true;
        for (int repeat = 0; repeat < 200; ++repeat)
            for (std::size_t i = 0; i < points.size(); ++i) {
                auto const& p = points[(i + static_cast<std::size_t>(shift)) % points.size()];
                Sample const cached = BtNoiseGenerator::getNoise(p[0], p[1], p[2]);
                Sample const computed = BtNoiseGenerator::computeNoise(p[0], p[1], p[2]);
                for (int c = 0; c < 4; ++c)
                    if (!(cached[c] == computed[c]) && !(std::isnan(cached[c]) && std::isnan(computed[c])))
                        same = false;
            }
    };
    bool same[4] = {};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back(run, t, std::ref(same[t]));
    for (std::thread& thread : threads)
        thread.join();
    for (int t = 0; t < 4; ++t)
        EXPECT_TRUE(same[t]) << "thread " << t;
    EXPECT_NE(BtNoiseGenerator::computeNoise(0, 0, 0)[3], 0.0f) << "the origin's value is not zero";
}

TEST(NoiseGenerator, TurbulenceOrders) {
    struct Case {
        double order;
        int octaves;
    } const cases[] = {
        {0.0, 0},
        {0.4, 0},
        {0.5, 1},
        {1.0, 1},
        {2.0, 2},
        {-2.0, 2},
        {2.5, 3},
        {-2.5, 2},
        {1e30, BtNoiseGenerator::MAX_TURBULENCE_ORDER},
        {std::numeric_limits<double>::quiet_NaN(), 0},
    };
    for (Case const& c : cases)
        EXPECT_EQ(BtNoiseGenerator::getTurbulenceOrder(c.order), c.octaves) << c.order;

    float const x = 0.3f;
    Sample const one = BtNoiseGenerator::computeNoise(x, 0, 0);
    Sample const two = BtNoiseGenerator::computeNoise(2 * x, 0, 0);
    Sample const sum = BtNoiseGenerator::computeTurbulence(x, 0, 0, 2.0);
    for (int c = 0; c < 4; ++c)
        EXPECT_EQ(sum[c], one[c] + 0.5f * two[c]) << "octaves add at half the amplitude, component " << c;

    struct TextCase {
        char const* text;
        char const* same;
    } const texts[] = {
        {"turbulence(0.3,0)", "0"},
        {"turbulence(0.3,0.4)", "0"},
        {"turbulence(0.3,-2)", "turbulence(0.3,2)"},
        {"turbulence(0.3,1)", "noise(0.3)"},
        {"turbulence3((0.3,0.1,0.2),0)", "(0,0,0)"},
    };
    for (TextCase const& c : texts) {
        BtExpEvalReport const a = evaluate(c.text);
        BtExpEvalReport const b = evaluate(c.same);
        ASSERT_TRUE(a.accepted && b.accepted) << c.text << ": " << a.reason << b.reason;
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(a.values[i], b.values[i]) << c.text << " vs " << c.same;
    }
    EXPECT_TRUE(std::isfinite(evaluate("turbulence(0.3,1000000000)").values[0])) << "a huge order is capped";
}
