#include "rnNumRecUniformRng.h"

namespace Qv {

RnNumRecUniformRng::RnNumRecUniformRng(std::uint64_t seed) : _v(4101842887655102017ULL), _w(1) {
    // The three parts are stirred in turn, so that neighbouring seeds give
    // unrelated streams from the first draw on.
    _u = seed ^ _v;
    drawInt64();
    _v = _u;
    drawInt64();
    _w = _v;
    drawInt64();
}

std::uint64_t RnNumRecUniformRng::drawInt64() {
    _u = _u * 2862933555777941757ULL + 7046029254386353087ULL;
    _v ^= _v >> 17;
    _v ^= _v << 31;
    _v ^= _v >> 8;
    _w = 4294957665ULL * (_w & 0xffffffffULL) + (_w >> 32);
    std::uint64_t x = _u ^ (_u << 21);
    x ^= x >> 35;
    x ^= x << 4;
    return (x + _v) ^ _w;
}

double RnNumRecUniformRng::draw() {
    // The top 53 bits: every value is exactly representable and below 1.
    return static_cast<double>(drawInt64() >> 11) * 0x1.0p-53;
}

} // namespace Qv
