#include "btExpArithmetic.h"

#include <cstdint>
#include <limits>

namespace Qv::BtExpArithmetic {

namespace {
// Towards zero into 32 bits; out of range values take the nearest end, NaN is 0.
std::int32_t truncateTo32(double value) {
    if (!(value == value))
        return 0;
    if (value <= static_cast<double>(std::numeric_limits<std::int32_t>::min()))
        return std::numeric_limits<std::int32_t>::min();
    if (value >= static_cast<double>(std::numeric_limits<std::int32_t>::max()))
        return std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(value);
}
} // namespace

double integerMod(double x, double y) {
    std::int64_t const a = truncateTo32(x);
    std::int64_t const b = truncateTo32(BtExpMath::safeDivisor(y));
    if (b == 0)
        return static_cast<double>(a);
    // In 64 bits, so that the smallest int32 by -1 does not overflow.
    std::int64_t const r = a % b;
    return static_cast<double>(r < 0 ? r + b : r);
}

} // namespace Qv::BtExpArithmetic
