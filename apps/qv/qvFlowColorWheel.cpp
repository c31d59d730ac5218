#include "qvFlowColorWheel.h"

#include <cmath>
#include <numbers>

namespace Qv::QvFlowColorWheel {

namespace {

// Steps from one primary or secondary colour to the next, as the benchmark's coding has them.
constexpr int RY = 15, YG = 6, GC = 4, CB = 11, BM = 13, MR = 6;
static_assert(RY + YG + GC + CB + BM + MR == NB_COLORS);

using Wheel = std::array<Rgb8, NB_COLORS>;

// Integer steps, truncated as the benchmark's table is.
constexpr std::uint8_t up(int i, int n) {
    return static_cast<std::uint8_t>(255 * i / n);
}
constexpr std::uint8_t down(int i, int n) {
    return static_cast<std::uint8_t>(255 - 255 * i / n);
}

constexpr Wheel makeWheel() {
    Wheel wheel{};
    int k = 0;
    for (int i = 0; i < RY; ++i)
        wheel[k++] = {255, up(i, RY), 0};
    for (int i = 0; i < YG; ++i)
        wheel[k++] = {down(i, YG), 255, 0};
    for (int i = 0; i < GC; ++i)
        wheel[k++] = {0, 255, up(i, GC)};
    for (int i = 0; i < CB; ++i)
        wheel[k++] = {0, down(i, CB), 255};
    for (int i = 0; i < BM; ++i)
        wheel[k++] = {up(i, BM), 0, 255};
    for (int i = 0; i < MR; ++i)
        wheel[k++] = {255, 0, down(i, MR)};
    return wheel;
}

constexpr Wheel WHEEL = makeWheel();

// Larger than any real displacement: the benchmark's mark of an unknown vector.
constexpr float UNKNOWN = 1e9f;

} // namespace

Rgb8 wheelColor(int k) {
    return WHEEL[static_cast<std::size_t>(k)];
}

Rgb8 colorOf(float x, float y, float maxMagnitude) {
    if (!std::isfinite(x) || !std::isfinite(y) || std::abs(x) > UNKNOWN || std::abs(y) > UNKNOWN)
        return {0, 0, 0};
    // A zero of either sign is the same direction: -0 would turn the hue half a turn.
    float const fx = x == 0.0f ? 0.0f : x / maxMagnitude;
    float const fy = y == 0.0f ? 0.0f : y / maxMagnitude;
    float const rad = std::sqrt(fx * fx + fy * fy);
    float const a = std::atan2(-fy, -fx) / std::numbers::pi_v<float>;
    float const fk = (a + 1.0f) / 2.0f * static_cast<float>(NB_COLORS - 1);
    int const k0 = static_cast<int>(fk);
    int const k1 = (k0 + 1) % NB_COLORS;
    float const f = fk - static_cast<float>(k0);
    Rgb8 result{};
    for (std::size_t b = 0; b < 3; ++b) {
        float const col0 = static_cast<float>(WHEEL[static_cast<std::size_t>(k0)][b]) / 255.0f;
        float const col1 = static_cast<float>(WHEEL[static_cast<std::size_t>(k1)][b]) / 255.0f;
        float col = (1.0f - f) * col0 + f * col1;
        if (rad <= 1.0f)
            col = 1.0f - rad * (1.0f - col); // more saturated as the magnitude grows
        else
            col *= 0.75f; // beyond the maximum
        result[b] = static_cast<std::uint8_t>(255.0 * col);
    }
    return result;
}

} // namespace Qv::QvFlowColorWheel
