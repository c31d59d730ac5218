#pragma once
// A ratio of two ints: frame rates (30000/1001) and pixel aspects (10/11).
// Kept as written, with a positive denominator, so a rate reads back as given;
// comparison is by value, so 2/4 equals 1/2. 0/1 is the usual "unspecified".
#include "exBase.h"

#include <compare>
#include <iosfwd>
#include <string_view>

namespace Qv {

struct RationalEx {
    // A zero denominator, or a division by a zero ratio; the reason names the values.
    QV_DECLARE_EX(ExDivisionByZero, ExBase);
    // A value that does not fit two ints even when reduced.
    QV_DECLARE_EX(ExOverflow, ExBase);
    // A fraction text that cannot be read; the reason quotes it.
    QV_DECLARE_EX(ExBadFraction, ExBase);
    // A rate that is negative or not finite.
    QV_DECLARE_EX(ExBadRate, ExBase);
};

class Rational {
public:
    Rational() = default;
    // Throws RationalEx::ExDivisionByZero for a zero denominator.
    Rational(int numerator, int denominator);

    void setValue(int numerator, int denominator);
    // Reduces by the greatest common divisor, so that large terms of a small
    // ratio fit; throws RationalEx::ExOverflow if they still do not.
    void setLargeValue(long long numerator, long long denominator);

    int getNumerator() const { return _num; }
    int getDenominator() const { return _den; }
    float getFloat() const { return static_cast<float>(getDouble()); }
    double getDouble() const { return static_cast<double>(_num) / _den; }
    bool isZero() const { return _num == 0; }
    Rational getReduced() const;

    friend bool operator==(Rational const& a, Rational const& b) {
        return static_cast<long long>(a._num) * b._den == static_cast<long long>(b._num) * a._den;
    }
    friend std::strong_ordering operator<=>(Rational const& a, Rational const& b) {
        return static_cast<long long>(a._num) * b._den <=> static_cast<long long>(b._num) * a._den;
    }

private:
    int _num = 0;
    int _den = 1;
};

// "30000/1001"
std::ostream& operator<<(std::ostream& os, Rational const& value);

struct RationalUtil {
    // "16:9" with separator ":"; spaces around each term are allowed, and a
    // text without the separator is a whole number ("2" is 2/1). Throws
    // RationalEx::ExBadFraction or, for a zero denominator, ExDivisionByZero.
    static Rational fromFractionString(std::string_view text, std::string_view separator);

    // The exact ratio of a rate given as a decimal: the NTSC family given to a
    // few decimals becomes its n*1000/1001 form (29.97 -> 30000/1001,
    // 23.976 -> 24000/1001), any other rate its closest small fraction
    // (25 -> 25/1, 12.5 -> 25/2). 0 is 0/1. Throws RationalEx::ExBadRate for a
    // negative or non-finite rate, ExOverflow for one beyond int.
    static Rational fromRate(double rate);
};

} // namespace Qv
