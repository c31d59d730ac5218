#include "btRandNode.h"

#include "liDate.h"
#include "rnNumRecUniformRng.h"

#include <chrono>

namespace Qv {

std::uint64_t BtRandNode::toSeed(double value) {
    constexpr double LIMIT = 18446744073709551616.0; // 2^64
    if (!(value > 0.0))
        return 0;
    if (value >= LIMIT)
        return UINT64_MAX;
    return static_cast<std::uint64_t>(value);
}

double BtRandNode::compute(double seed) {
    return RnNumRecUniformRng(toSeed(seed)).draw();
}

double BtTrueRandNode::compute(double a, double b) {
    auto const now = std::chrono::system_clock::now();
    LiDate const date(now);
    double const microseconds = static_cast<double>(
        std::chrono::duration_cast<std::chrono::microseconds>(now - date.toTimePoint()).count());
    double const seed = date.getMinute() * 6e7 + date.getSecond() * 1e6 + microseconds;
    return a + (b - a) * RnNumRecUniformRng(BtRandNode::toSeed(seed)).draw();
}

} // namespace Qv
