#include "rational.h"

#include "liStringUtil.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <fmt/format.h>
#include <numeric>
#include <ostream>

namespace Qv {

namespace {
bool fitsInt(long long value) {
    return value >= INT_MIN && value <= INT_MAX;
}

unsigned long long magnitude(long long value) {
    return value < 0 ? 0ULL - static_cast<unsigned long long>(value) : static_cast<unsigned long long>(value);
}

[[noreturn]] void throwZeroDenominator(long long numerator) {
    throw RationalEx::ExDivisionByZero(__FILE__, __LINE__,
                                       fmt::format("the ratio {}/0 has a zero denominator", numerator));
}
} // namespace

Rational::Rational(int numerator, int denominator) {
    setValue(numerator, denominator);
}

void Rational::setValue(int numerator, int denominator) {
    if (denominator == 0)
        throwZeroDenominator(numerator);
    if (denominator > 0) {
        _num = numerator;
        _den = denominator;
        return;
    }
    long long const num = -static_cast<long long>(numerator);
    long long const den = -static_cast<long long>(denominator);
    if (!fitsInt(num) || !fitsInt(den))
        throw RationalEx::ExOverflow(__FILE__, __LINE__,
                                     fmt::format("the ratio {}/{} has no form with a positive denominator "
                                                 "that fits two ints",
                                                 numerator, denominator));
    _num = static_cast<int>(num);
    _den = static_cast<int>(den);
}

void Rational::setLargeValue(long long numerator, long long denominator) {
    if (denominator == 0)
        throwZeroDenominator(numerator);
    unsigned long long num = magnitude(numerator);
    unsigned long long den = magnitude(denominator);
    unsigned long long const divisor = std::gcd(num, den);
    num /= divisor;
    den /= divisor;
    bool const negative = (numerator < 0) != (denominator < 0) && num != 0;
    if (num > static_cast<unsigned long long>(INT_MAX) + (negative ? 1 : 0) || den > INT_MAX)
        throw RationalEx::ExOverflow(
            __FILE__, __LINE__,
            fmt::format("the ratio {}/{} does not fit two ints even when reduced", numerator, denominator));
    _num = negative ? static_cast<int>(0LL - static_cast<long long>(num)) : static_cast<int>(num);
    _den = static_cast<int>(den);
}

Rational Rational::getReduced() const {
    Rational reduced;
    reduced.setLargeValue(_num, _den);
    return reduced;
}

std::ostream& operator<<(std::ostream& os, Rational const& value) {
    return os << value.getNumerator() << '/' << value.getDenominator();
}

Rational RationalUtil::fromFractionString(std::string_view text, std::string_view separator) {
    auto bad = [&](std::string_view why) {
        return RationalEx::ExBadFraction(__FILE__, __LINE__,
                                         fmt::format("bad fraction \"{}\": {}", text, why));
    };
    if (separator.empty())
        throw bad("empty separator");
    std::size_t const pos = text.find(separator);
    std::string const numText = LiStringUtil::trimLeadingAndTrailingSpaces(
        text.substr(0, pos == std::string_view::npos ? text.size() : pos));
    std::string const denText =
        pos == std::string_view::npos
            ? std::string("1")
            : LiStringUtil::trimLeadingAndTrailingSpaces(text.substr(pos + separator.size()));
    auto const num = LiStringUtil::tryConvertToInt(numText);
    auto const den = LiStringUtil::tryConvertToInt(denText);
    if (!num || !den)
        throw bad(fmt::format("expected two integers separated by \"{}\"", separator));
    if (*den == 0)
        throw RationalEx::ExDivisionByZero(__FILE__, __LINE__,
                                           fmt::format("the fraction \"{}\" has a zero denominator", text));
    return Rational(*num, *den);
}

Rational RationalUtil::fromRate(double rate) {
    if (!std::isfinite(rate) || rate < 0.0)
        throw RationalEx::ExBadRate(__FILE__, __LINE__, fmt::format("{} is not a frame rate", rate));
    if (rate > INT_MAX)
        throw RationalEx::ExOverflow(__FILE__, __LINE__,
                                     fmt::format("the rate {} does not fit an int", rate));

    double const whole = std::round(rate);
    if (std::fabs(rate - whole) <= 1e-9 * std::max(1.0, rate))
        return Rational(static_cast<int>(whole), 1);

    // Rates of the NTSC family are written rounded (29.97, 23.976, 59.94):
    // within half a thousandth of n*1000/1001 they mean that exact ratio.
    double const ntscBase = std::round(rate * 1.001);
    if (ntscBase >= 1.0 && ntscBase * 1000.0 <= INT_MAX &&
        std::fabs(rate - ntscBase * 1000.0 / 1001.0) < 5e-4) {
        Rational ntsc;
        ntsc.setLargeValue(static_cast<long long>(ntscBase) * 1000, 1001);
        return ntsc;
    }

    // Otherwise the first convergent of the continued fraction that is close
    // enough, with the denominator kept small.
    constexpr long long kMaxDen = 1000000;
    long long h0 = 0, h1 = 1, k0 = 1, k1 = 0;
    double x = rate;
    for (int i = 0; i < 64; ++i) {
        double const a = std::floor(x);
        long long const h2 = static_cast<long long>(a) * h1 + h0;
        long long const k2 = static_cast<long long>(a) * k1 + k0;
        if (k2 > kMaxDen || h2 > INT_MAX)
            break;
        h0 = h1;
        h1 = h2;
        k0 = k1;
        k1 = k2;
        if (std::fabs(rate - static_cast<double>(h1) / static_cast<double>(k1)) <= 1e-9 * rate || x == a)
            break;
        x = 1.0 / (x - a);
    }
    Rational result;
    result.setLargeValue(h1, k1);
    return result;
}

} // namespace Qv
