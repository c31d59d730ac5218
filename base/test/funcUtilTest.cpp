// The shaping curves at their edges: ends, joints between their pieces, and
// inputs that are not numbers.
#include "funcUtil.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

using namespace Qv;

namespace {
constexpr double INF = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
} // namespace

TEST(FuncUtil, SCurveValues) {
    struct Case {
        double p, in, out, expected;
    } const cases[] = {
        {0.0, 0.5, 0.5, 0.0},
        {1.0, 0.5, 0.5, 1.0},
        {0.5, 0.5, 0.5, 0.5},
        {0.25, 0.5, 0.5, 0.125},
        {0.75, 0.5, 0.5, 0.875},
        // Clamped outside [0, 1]; NaN counts as the start.
        {-3.0, 0.5, 0.5, 0.0},
        {7.0, 0.5, 0.5, 1.0},
        {-INF, 0.5, 0.5, 0.0},
        {INF, 0.5, 0.5, 1.0},
        {NaN, 0.5, 0.5, 0.0},
        // No ease is the straight line; a lone ease-in is a parabola into a line.
        {0.3, 0.0, 0.0, 0.3},
        {0.5, 1.0, 0.0, 0.25},
        {0.5, NaN, NaN, 0.5},
        // Ease lengths summing past 1 are scaled to sum 1: (1, 1) is (0.5, 0.5).
        {0.25, 1.0, 1.0, 0.125},
    };
    for (Case const& c : cases)
        EXPECT_DOUBLE_EQ(FuncUtil::computeSCurve(c.p, c.in, c.out), c.expected)
            << c.p << ' ' << c.in << ' ' << c.out;
}

TEST(FuncUtil, SCurveIsContinuousAndRisingForAnyEases) {
    for (auto [in, out] : {std::pair{0.5, 0.5}, {0.2, 0.3}, {0.0, 0.7}, {0.9, 0.0}}) {
        double previous = 0.0;
        for (int i = 1; i <= 1000; ++i) {
            double const value = FuncUtil::computeSCurve(i / 1000.0, in, out);
            EXPECT_GE(value, previous) << in << ' ' << out << " at " << i;
            EXPECT_LT(value - previous, 0.0025) << "a jump at " << i << " for " << in << ' ' << out;
            previous = value;
        }
        EXPECT_DOUBLE_EQ(previous, 1.0);
    }
}

TEST(FuncUtil, GaussCurveValues) {
    struct Case {
        double t, center, width, height, expected;
    } const cases[] = {
        {2.0, 2.0, 0.5, 3.0, 3.0},
        {3.0, 2.0, 1.0, 1.0, std::exp(-0.5)},
        {1.0, 2.0, -1.0, 1.0, std::exp(-0.5)}, // the sign of the width does not matter
        {0.0, 0.0, 0.0, 4.0, 4.0},             // a zero width is a spike at the centre
        {1e-300, 0.0, 0.0, 4.0, 0.0},
        {INF, 0.0, 1.0, 1.0, 0.0},
    };
    for (Case const& c : cases)
        EXPECT_DOUBLE_EQ(FuncUtil::computeGaussCurve(c.t, c.center, c.width, c.height), c.expected)
            << c.t << ' ' << c.center << ' ' << c.width;
}
