// The flow colour coding against colours worked out by hand from the
// benchmark's wheel: 15 steps red to yellow, 6 to green, 4 to cyan, 11 to
// blue, 13 to magenta, 6 back to red, each step 255 * i / n truncated.
#include "qvFlowColorWheel.h"

#include <gtest/gtest.h>
#include <limits>

namespace Qv {
namespace {

using QvFlowColorWheel::Rgb8;

TEST(FlowColorWheel, theWheelTurnsThroughThePrimariesAndSecondaries) {
    struct Case {
        int k;
        Rgb8 rgb;
    };
    std::vector<Case> const cases{
        {0, {255, 0, 0}},    // red
        {5, {255, 85, 0}},   // 255 * 5 / 15
        {15, {255, 255, 0}}, // yellow, first of yellow to green
        {16, {213, 255, 0}}, // 255 - 255 / 6 = 255 - 42
        {21, {0, 255, 0}},   // green
        {25, {0, 255, 255}}, // cyan
        {27, {0, 209, 255}}, // 255 - 510 / 11 = 255 - 46
        {36, {0, 0, 255}},   // blue
        {40, {78, 0, 255}},  // 1020 / 13
        {49, {255, 0, 255}}, // magenta
        {54, {255, 0, 43}},  // 255 - 1275 / 6 = 255 - 212: the last before red again
    };
    for (Case const& c : cases)
        EXPECT_EQ(QvFlowColorWheel::wheelColor(c.k), c.rgb) << "colour " << c.k;
}

TEST(FlowColorWheel, directionGivesTheHueAndMagnitudeTheSaturation) {
    float const nan = std::numeric_limits<float>::quiet_NaN();
    float const inf = std::numeric_limits<float>::infinity();
    struct Case {
        char const* what;
        float x, y, max;
        Rgb8 rgb;
    };
    std::vector<Case> const cases{
        {"still: white", 0.0f, 0.0f, 1.0f, {255, 255, 255}},
        // atan2(-0, -1) = -pi: the wheel's first colour.
        {"right at the maximum: red", 1.0f, 0.0f, 1.0f, {255, 0, 0}},
        {"right with a negative zero y: red all the same", 1.0f, -0.0f, 1.0f, {255, 0, 0}},
        // atan2(0, 1) = 0: half way round, colour 27.
        {"left at the maximum: colour 27", -1.0f, 0.0f, 1.0f, {0, 209, 255}},
        // atan2(-1, 0) = -pi/2: a quarter round, 13.5, half of 13 (255, 221, 0)
        // and half of 14 (255, 238, 0): green 229.5, truncated.
        {"down at the maximum: between orange and yellow", 0.0f, 1.0f, 1.0f, {255, 229, 0}},
        // Half the maximum: each component half way from white, 127.5 truncated.
        {"right at half the maximum: pink", 0.5f, 0.0f, 1.0f, {255, 127, 127}},
        {"the maximum scales the magnitude", 4.0f, 0.0f, 8.0f, {255, 127, 127}},
        // Beyond the maximum: the wheel's colour at 0.75, 191.25 truncated.
        {"right at twice the maximum: dark red", 2.0f, 0.0f, 1.0f, {191, 0, 0}},
        {"down at twice the maximum", 0.0f, 10.0f, 5.0f, {191, 172, 0}},
        {"not a number: black", nan, 0.0f, 1.0f, {0, 0, 0}},
        {"infinite: black", 0.0f, -inf, 1.0f, {0, 0, 0}},
        {"beyond 1e9, the mark of an unknown vector: black", 2e9f, 0.0f, 1.0f, {0, 0, 0}},
    };
    for (Case const& c : cases)
        EXPECT_EQ(QvFlowColorWheel::colorOf(c.x, c.y, c.max), c.rgb) << c.what;
}

} // namespace
} // namespace Qv
