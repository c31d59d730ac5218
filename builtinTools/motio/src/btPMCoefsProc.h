#pragma once
// The two Perona-Malik edge-stopping coefficients of a line of pixels, from
// the image gradient (gx, gy in its first two components) and the time
// derivative: with s = (gx^2 + gy^2 + it^2) * kDiffusionScale,
// g1 = exp(-s) and g2 = 1 / (1 + s), each output pixel (g1, g2, 0, 1).
#include "coColor.h"

#include <bit>
#include <cstdint>

namespace Qv {

class BtPMCoefsProc {
public:
    using Rgba = CoRgbaColorTyped<float>;

    // 4.1666665, given by its bits so that every build agrees to the last one.
    static constexpr float kDiffusionScale = std::bit_cast<float>(std::uint32_t{0x40855555});

    // out[i] from gradient[i] and timeDerivative[i], for i < n. A non-finite
    // input counts as the strongest edge: both coefficients near zero.
    static void processLine(Rgba const* gradient, float const* timeDerivative, Rgba* out, int n);
};

} // namespace Qv
