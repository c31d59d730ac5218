#pragma once
// The colour coding of optical flow that the Middlebury benchmark made the
// common way to look at it: a wheel of 55 colours (red to yellow in 15 steps,
// yellow to green in 6, green to cyan in 4, cyan to blue in 11, blue to
// magenta in 13, magenta to red in 6) gives the hue from the direction, the
// saturation grows with the magnitude up to a maximum, and vectors beyond it
// are darkened by 0.75. Still pixels are white; unknown ones (not finite, or
// beyond 1e9) black.
#include <array>
#include <cstdint>

namespace Qv::QvFlowColorWheel {

using Rgb8 = std::array<std::uint8_t, 3>;

inline constexpr int NB_COLORS = 55;

// Colour k of the wheel, 0 <= k < NB_COLORS: 0 is red, the hues then turn
// through yellow, green, cyan, blue and magenta.
Rgb8 wheelColor(int k);

// The colour of the displacement (x, y), x to the right and y downwards, in
// the units of `maxMagnitude` (> 0), at which the colour is fully saturated.
Rgb8 colorOf(float x, float y, float maxMagnitude);

} // namespace Qv::QvFlowColorWheel
