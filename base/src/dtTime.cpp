#include "dtTime.h"

#include <cmath>
#include <fmt/format.h>
#include <ostream>

namespace Qv {

namespace {
void checkRate(Rational rate) {
    if (rate.getNumerator() <= 0)
        throw DtTimeEx::ExNoRate(__FILE__, __LINE__,
                                 fmt::format("frames and seconds need a rate above zero, not {}/{}",
                                             rate.getNumerator(), rate.getDenominator()));
}
} // namespace

double DtTime::getSeconds() const {
    checkRate(_rate);
    return static_cast<double>(_index.getValue()) * _rate.getDenominator() / _rate.getNumerator();
}

DtTime DtTime::fromSeconds(double seconds, Rational rate) {
    checkRate(rate);
    double const frames = std::floor(seconds * rate.getNumerator() / rate.getDenominator() + 1e-6);
    // 2^63 is exactly representable; anything at or beyond it is not an index.
    if (!std::isfinite(frames) || frames >= 9223372036854775808.0 || frames < -9223372036854775808.0)
        throw DtTimeEx::ExBadTime(__FILE__, __LINE__,
                                  fmt::format("{} seconds at {}/{} frames per second is no frame index",
                                              seconds, rate.getNumerator(), rate.getDenominator()));
    return DtTime(DtTimeIndex(static_cast<std::int64_t>(frames)), rate);
}

std::ostream& operator<<(std::ostream& os, DtTimeIndex index) {
    return os << index.getValue();
}

std::ostream& operator<<(std::ostream& os, DtTime const& time) {
    return os << time.getIndex() << '@' << time.getRate();
}

} // namespace Qv
