#pragma once
// A seeded uniform generator whose sequence depends on nothing but the seed:
// the same seed gives the same draws on every machine, in every session and on
// every thread. It is the combined generator of Numerical Recipes (third
// edition, "Ran"): a 64-bit linear congruential step, a 64-bit xorshift and a
// multiply-with-carry, mixed. Its period is about 3.1e57, far more than any
// expression will ever draw.
//
// One object is one stream; it is small and cheap to make, so a caller that
// wants one value for a seed makes a generator and draws once.
#include <cstdint>

namespace Qv {

class RnNumRecUniformRng {
public:
    explicit RnNumRecUniformRng(std::uint64_t seed);

    // The next 64 random bits.
    std::uint64_t drawInt64();
    // The next draw as a double in [0, 1), with the 53 bits a double holds.
    double draw();

private:
    std::uint64_t _u;
    std::uint64_t _v;
    std::uint64_t _w;
};

} // namespace Qv
