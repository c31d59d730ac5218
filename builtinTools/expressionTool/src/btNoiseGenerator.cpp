#include "btNoiseGenerator.h"

#include <cmath>
#include <limits>

namespace Qv {

namespace {

// The primes of the four components of a corner: three gradient components, then the value.
constexpr std::uint32_t PRIMES[4][3] = {{67, 59, 71}, {73, 79, 83}, {89, 97, 101}, {103, 107, 109}};

// Floor into 32 bits; beyond them the nearest end, NaN as 0. The hash wraps
// anyway, so far-away cells only need to be defined, not distinct.
std::int32_t floorToCell(float value) {
    float const floored = std::floor(value);
    if (!(floored == floored))
        return 0;
    if (floored <= -2147483648.0f)
        return std::numeric_limits<std::int32_t>::min();
    if (floored >= 2147483648.0f)
        return std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(floored);
}

BtNoiseGenerator::Sample corner(std::int32_t i, std::int32_t j, std::int32_t k) {
    BtNoiseGenerator::Sample sample;
    for (int c = 0; c < 4; ++c)
        sample[c] = BtNoiseGenerator::hash(i, j, k, PRIMES[c][0], PRIMES[c][1], PRIMES[c][2]);
    return sample;
}

// Hermite interpolation of value and gradient across one axis, from the low
// corner's vector to the high one's, at fraction f.
BtNoiseGenerator::Sample collapse(BtNoiseGenerator::Sample const& low, BtNoiseGenerator::Sample const& high,
                                  int axis, float f) {
    float const s1 = (-2.0f * f + 3.0f) * f * f;
    float const s0 = (2.0f * f - 3.0f) * f * f + 1.0f;
    BtNoiseGenerator::Sample out;
    for (int c = 0; c < 3; ++c)
        out[c] = low[c] * s0 + high[c] * s1;
    out[3] = (((f - 2.0f) * f + 1.0f) * low[axis] + (f - 1.0f) * high[axis] * f) * f +
             (low[3] * s0 + high[3] * s1);
    return out;
}

struct NoiseCache {
    bool valid = false; // starts empty, so that the first point is computed too
    float point[3] = {};
    BtNoiseGenerator::Sample sample = {};
};

thread_local NoiseCache t_cache;

} // namespace

float BtNoiseGenerator::hash(std::int32_t i, std::int32_t j, std::int32_t k, std::uint32_t p, std::uint32_t q,
                             std::uint32_t r) {
    // Unsigned, so that every product wraps as intended.
    std::uint32_t const a = static_cast<std::uint32_t>(i) * p + static_cast<std::uint32_t>(j) * q +
                            static_cast<std::uint32_t>(k) * r;
    std::uint32_t const n = (a << 13) ^ a;
    std::uint32_t const m = (n * (n * 15731u * n + 789221u) - 771171059u) & 0x7fffffffu;
    return 1.0f - static_cast<float>(m) * 9.313226e-10f;
}

BtNoiseGenerator::Sample BtNoiseGenerator::computeNoise(float x, float y, float z) {
    std::int32_t const cell[3] = {floorToCell(x), floorToCell(y), floorToCell(z)};
    float const f[3] = {x - std::floor(x), y - std::floor(y), z - std::floor(z)};
    // Corner c lies at cell + (bit 0, bit 1, bit 2) of c.
    Sample corners[8];
    for (int c = 0; c < 8; ++c)
        corners[c] = corner(static_cast<std::int32_t>(static_cast<std::uint32_t>(cell[0]) + (c & 1)),
                            static_cast<std::int32_t>(static_cast<std::uint32_t>(cell[1]) + ((c >> 1) & 1)),
                            static_cast<std::int32_t>(static_cast<std::uint32_t>(cell[2]) + ((c >> 2) & 1)));
    // Collapse x, then y, then z: each pass halves the corners.
    int count = 8;
    for (int axis = 0; axis < 3; ++axis) {
        count /= 2;
        for (int c = 0; c < count; ++c)
            corners[c] = collapse(corners[2 * c], corners[2 * c + 1], axis, f[axis]);
    }
    return corners[0];
}

BtNoiseGenerator::Sample BtNoiseGenerator::getNoise(float x, float y, float z) {
    NoiseCache& cache = t_cache;
    if (cache.valid && cache.point[0] == x && cache.point[1] == y && cache.point[2] == z)
        return cache.sample;
    cache.sample = computeNoise(x, y, z);
    cache.point[0] = x;
    cache.point[1] = y;
    cache.point[2] = z;
    cache.valid = true;
    return cache.sample;
}

int BtNoiseGenerator::getTurbulenceOrder(double order) {
    float const rounded = std::floor(static_cast<float>(order) + 0.5f);
    if (!(rounded == rounded))
        return 0;
    float const magnitude = std::fabs(rounded);
    return magnitude >= MAX_TURBULENCE_ORDER ? MAX_TURBULENCE_ORDER : static_cast<int>(magnitude);
}

BtNoiseGenerator::Sample BtNoiseGenerator::computeTurbulence(float x, float y, float z, double order) {
    Sample sum = {};
    float amplitude = 1.0f;
    for (int octave = getTurbulenceOrder(order); octave > 0; --octave) {
        Sample const sample = getNoise(x, y, z);
        for (int c = 0; c < 4; ++c)
            sum[c] += amplitude * sample[c];
        x *= 2.0f;
        y *= 2.0f;
        z *= 2.0f;
        amplitude *= 0.5f;
    }
    return sum;
}

} // namespace Qv
