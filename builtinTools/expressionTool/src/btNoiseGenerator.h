#pragma once
// Smooth noise in three dimensions, and its fractal sum (turbulence).
//
// A lattice noise in single precision: every integer point carries a
// pseudo-random value and gradient drawn from a hash of its coordinates, and
// the noise between lattice points is the Hermite interpolation of the eight
// corners around it, axis by axis (x, then y, then z). A sample is four
// floats: the interpolated gradient (x, y, z) and the value; each lies
// roughly in (-1, 1]. At a lattice point the sample is the corner's own.
//
// The numbers, the primes and the order of the operations are fixed: stored
// compositions animate with them, so they must give the same floats forever.
#include <array>
#include <cstdint>

namespace Qv {

class BtNoiseGenerator {
public:
    using Sample = std::array<float, 4>; // gradient x, y, z, then the value
    enum { GRADIENT_X = 0, GRADIENT_Y = 1, GRADIENT_Z = 2, VALUE = 3 };

    // Orders of turbulence above this count as this: further octaves add less
    // than 2^-63 of the first, which a float sum cannot hold, and a huge order
    // would stall a worker.
    static constexpr int MAX_TURBULENCE_ORDER = 64;

    // The sample at a point, through the calling thread's one-entry cache: the
    // components of one point are often asked for in a row. The result is
    // always that of computeNoise.
    static Sample getNoise(float x, float y, float z);
    // The sample at a point, computed.
    static Sample computeNoise(float x, float y, float z);

    // The fractal sum of `order` octaves, each at twice the frequency and half
    // the amplitude of the one before, starting at amplitude 1 at the point.
    // The order is |floor(order + 0.5)| in single precision; below 1 (NaN
    // included) the sum is zero. Signed: no absolute value is taken.
    static Sample computeTurbulence(float x, float y, float z, double order);
    static int getTurbulenceOrder(double order);

    // The lattice hash of (i, j, k) for one triple of primes, in (-1, 1].
    static float hash(std::int32_t i, std::int32_t j, std::int32_t k, std::uint32_t p, std::uint32_t q,
                      std::uint32_t r);
};

} // namespace Qv
