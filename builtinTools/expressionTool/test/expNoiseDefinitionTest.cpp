// Noise and turbulence between lattice points, against the definition written
// again here from scratch: the lattice hash, the four corner components, and
// the Hermite collapse of x, then y, then z, all in single precision. Stored
// compositions animate with these floats, so they must match to the bit.
#include "btNoiseGenerator.h"
#include "expTestSupport.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>

using namespace Qv;
using Qv::ExpTest::evaluate;

namespace {

using Vec4 = std::array<float, 4>; // gradient x, y, z, value

float latticeHash(std::int32_t i, std::int32_t j, std::int32_t k, std::uint32_t const (&primes)[3]) {
    std::uint32_t const a = static_cast<std::uint32_t>(i) * primes[0] +
                            static_cast<std::uint32_t>(j) * primes[1] +
                            static_cast<std::uint32_t>(k) * primes[2];
    std::uint32_t const n = (a << 13) ^ a;
    std::uint32_t const m = (n * (n * 15731u * n + 789221u) - 771171059u) & 0x7fffffffu;
    return 1.0f - static_cast<float>(m) * 9.313226e-10f;
}

Vec4 cornerAt(std::int32_t i, std::int32_t j, std::int32_t k) {
    static std::uint32_t const primes[4][3] = {{67, 59, 71}, {73, 79, 83}, {89, 97, 101}, {103, 107, 109}};
    return {latticeHash(i, j, k, primes[0]), latticeHash(i, j, k, primes[1]), latticeHash(i, j, k, primes[2]),
            latticeHash(i, j, k, primes[3])};
}

// Hermite interpolation of value and gradient from lo to hi across one axis.
Vec4 hermite(Vec4 const& lo, Vec4 const& hi, int axis, float f) {
    float const s1 = (-2 * f + 3) * f * f;
    float const s0 = (2 * f - 3) * f * f + 1;
    Vec4 const gradient = {lo[0] * s0 + hi[0] * s1, lo[1] * s0 + hi[1] * s1, lo[2] * s0 + hi[2] * s1};
    float const value =
        (((f - 2) * f + 1) * lo[axis] + (f - 1) * hi[axis] * f) * f + (lo[3] * s0 + hi[3] * s1);
    return {gradient[0], gradient[1], gradient[2], value};
}

Vec4 noiseAt(float x, float y, float z) {
    auto const i = static_cast<std::int32_t>(std::floor(x));
    auto const j = static_cast<std::int32_t>(std::floor(y));
    auto const k = static_cast<std::int32_t>(std::floor(z));
    float const fx = x - std::floor(x);
    float const fy = y - std::floor(y);
    float const fz = z - std::floor(z);
    auto const alongX = [&](std::int32_t b, std::int32_t c) {
        return hermite(cornerAt(i, b, c), cornerAt(i + 1, b, c), 0, fx);
    };
    auto const alongY = [&](std::int32_t c) { return hermite(alongX(j, c), alongX(j + 1, c), 1, fy); };
    return hermite(alongY(k), alongY(k + 1), 2, fz);
}

Vec4 turbulenceAt(float x, float y, float z, double order) {
    int const octaves = static_cast<int>(std::fabs(std::floor(static_cast<float>(order) + 0.5f)));
    Vec4 sum = {0, 0, 0, 0};
    float amplitude = 1;
    for (int n = 0; n < octaves; ++n) {
        Vec4 const sample = noiseAt(x, y, z);
        for (int c = 0; c < 4; ++c)
            sum[c] += amplitude * sample[c];
        x *= 2;
        y *= 2;
        z *= 2;
        amplitude *= 0.5f;
    }
    return sum;
}

// A double as a text that reads back as the same double.
std::string literal(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.17g", value);
    return text;
}

std::string vector(double x, double y, double z) {
    return "(" + literal(x) + "," + literal(y) + "," + literal(z) + ")";
}

struct Point {
    double x, y, z;
};

// Off the lattice on every axis, in cells on both sides of 0 and far out.
Point const POINTS[] = {{0.25, 0.5, 0.75},       {-1.3, 2.7, 0.1},    {12.6, -7.45, 3.3},  {-0.5, -0.5, -0.5},
                        {100.125, 3.875, -42.3}, {0.999, 0.001, 0.5}, {-37.71, 81.02, 5.5}};

class NoiseDefinition : public ExpTest::PackagesTest {};

} // namespace

TEST_F(NoiseDefinition, TheGeneratorGivesTheDefinitionsFourComponents) {
    for (Point const& p : POINTS) {
        auto const x = static_cast<float>(p.x), y = static_cast<float>(p.y), z = static_cast<float>(p.z);
        Vec4 const expected = noiseAt(x, y, z);
        BtNoiseGenerator::Sample const computed = BtNoiseGenerator::computeNoise(x, y, z);
        BtNoiseGenerator::Sample const cached = BtNoiseGenerator::getNoise(x, y, z);
        for (int c = 0; c < 4; ++c) {
            EXPECT_EQ(computed[c], expected[c]) << vector(p.x, p.y, p.z) << " component " << c;
            EXPECT_EQ(cached[c], expected[c]) << vector(p.x, p.y, p.z) << " component " << c;
        }
    }
}

TEST_F(NoiseDefinition, TheFunctionsOfTheLanguageGiveTheDefinitionsValues) {
    for (Point const& p : POINTS) {
        auto const x = static_cast<float>(p.x), y = static_cast<float>(p.y), z = static_cast<float>(p.z);
        // noise(x) is the value at (x, 0, 0), noise3(v) the gradient at v.
        std::string const noise = "noise(" + literal(p.x) + ")";
        EXPECT_EQ(evaluate(noise).values[0], static_cast<double>(noiseAt(x, 0, 0)[3])) << noise;
        std::string const noise3 = "noise3(" + vector(p.x, p.y, p.z) + ")";
        BtExpEvalReport const gradient = evaluate(noise3);
        ASSERT_TRUE(gradient.accepted) << noise3 << ": " << gradient.reason;
        Vec4 const atPoint = noiseAt(x, y, z);
        for (int c = 0; c < 3; ++c)
            EXPECT_EQ(gradient.values[c], static_cast<double>(atPoint[c])) << noise3 << " component " << c;
        // Turbulence is signed, and its order is rounded half up then made positive.
        for (double order : {1.0, 2.0, 3.4, -4.0, 5.5}) {
            std::string const turbulence = "turbulence(" + literal(p.x) + "," + literal(order) + ")";
            EXPECT_EQ(evaluate(turbulence).values[0], static_cast<double>(turbulenceAt(x, 0, 0, order)[3]))
                << turbulence;
            std::string const turbulence3 =
                "turbulence3(" + vector(p.x, p.y, p.z) + "," + literal(order) + ")";
            BtExpEvalReport const sum = evaluate(turbulence3);
            ASSERT_TRUE(sum.accepted) << turbulence3 << ": " << sum.reason;
            Vec4 const expected = turbulenceAt(x, y, z, order);
            for (int c = 0; c < 3; ++c)
                EXPECT_EQ(sum.values[c], static_cast<double>(expected[c]))
                    << turbulence3 << " component " << c;
        }
    }
}
