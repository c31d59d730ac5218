#include "baseTestHelpers.h"
#include "dtTime.h"
#include "rational.h"

#include <climits>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

using namespace Qv;
using namespace Qv::TestHelpers;

namespace {

void expectTerms(Rational const& r, long long num, long long den) {
    EXPECT_EQ(r.getNumerator(), num);
    EXPECT_EQ(r.getDenominator(), den);
}

TEST(RationalTest, KeepsTermsAsGivenComparesByValueAndKeepsTheOldValueOnFailure) {
    expectTerms(Rational(30000, 1001), 30000, 1001);
    expectTerms(Rational(3, -6), -3, 6); // the sign moves to the numerator
    expectTerms(Rational(3, -6).getReduced(), -1, 2);
    EXPECT_EQ(Rational(2, 4), Rational(1, 2));
    EXPECT_LT(Rational(-1, 2), Rational(0, 7));
    EXPECT_THROW(Rational(1, 0), RationalEx::ExDivisionByZero);
    Rational r;
    EXPECT_THROW(r.setLargeValue(5, 0), RationalEx::ExDivisionByZero);
    EXPECT_THROW(r.setValue(INT_MIN, -1), RationalEx::ExOverflow);
    EXPECT_THROW(r.setLargeValue(1LL << 40, 3), RationalEx::ExOverflow);
    EXPECT_EQ(r, Rational());
}

TEST(RationalTest, LargeValuesAreReduced) {
    struct Case {
        long long num, den;
        int expectedNum, expectedDen;
    } const cases[] = {{30000000000LL, 1001000000LL, 30000, 1001},
                       {-48000000000LL, 2000000000LL, -24, 1},
                       {0, 123456789012LL, 0, 1},
                       {INT_MIN, 1, INT_MIN, 1},
                       {LLONG_MIN, LLONG_MIN, 1, 1}};
    for (auto const& c : cases) {
        SCOPED_TRACE(std::to_string(c.num) + "/" + std::to_string(c.den));
        Rational r;
        r.setLargeValue(c.num, c.den);
        expectTerms(r, c.expectedNum, c.expectedDen);
    }
}

TEST(RationalUtilTest, ReadsFractionTexts) {
    expectTerms(RationalUtil::fromFractionString(" 10 : 11 ", ":"), 10, 11);
    expectTerms(RationalUtil::fromFractionString("-4:3", ":"), -4, 3);
    expectTerms(RationalUtil::fromFractionString("2", ":"), 2, 1);
    for (char const* bad : {"", ":", "16:", "a:b", "1.5:1", "16/9", "1:2:3"})
        EXPECT_TRUE(throwsWith<RationalEx::ExBadFraction>([&] { RationalUtil::fromFractionString(bad, ":"); },
                                                          '"' + std::string(bad) + '"'));
    EXPECT_THROW(RationalUtil::fromFractionString("4:0", ":"), RationalEx::ExDivisionByZero);
}

TEST(RationalUtilTest, RatesBecomeTheirExactRatio) {
    struct Case {
        double rate;
        int num, den;
    } const cases[] = {
        {29.97, 30000, 1001}, {23.976, 24000, 1001}, {59.94, 60000, 1001}, {29.97002997, 30000, 1001},
        {25.0, 25, 1},        {12.5, 25, 2},         {0.0, 0, 1},          {29.5, 59, 2},
        {1.0 / 3.0, 1, 3},    {7.25, 29, 4}};
    for (auto const& c : cases) {
        SCOPED_TRACE(c.rate);
        expectTerms(RationalUtil::fromRate(c.rate), c.num, c.den);
    }
    for (double bad : {-25.0, std::nan(""), std::numeric_limits<double>::infinity()})
        EXPECT_THROW(RationalUtil::fromRate(bad), RationalEx::ExBadRate) << bad;
    EXPECT_THROW(RationalUtil::fromRate(1e12), RationalEx::ExOverflow);
}

TEST(DtTimeTest, ConvertsBetweenFramesAndSeconds) {
    Rational const ntsc(30000, 1001);
    struct Case {
        std::int64_t index;
        Rational rate;
    } const cases[] = {
        {0, Rational(25, 1)}, {-7, Rational(24, 1)}, {107892, ntsc}, {-1, ntsc}, {3, Rational(1, 2)}};
    for (auto const& c : cases) {
        SCOPED_TRACE(std::to_string(c.index) + " at " + std::to_string(c.rate.getFloat()));
        DtTime const time(DtTimeIndex(c.index), c.rate);
        double const frame = static_cast<double>(c.rate.getDenominator()) / c.rate.getNumerator();
        EXPECT_DOUBLE_EQ(time.getSeconds(), static_cast<double>(c.index) * frame);
        EXPECT_EQ(DtTime::fromSeconds(time.getSeconds(), c.rate), time);
        EXPECT_EQ(DtTime::fromSeconds(time.getSeconds() + 0.5 * frame, c.rate), time) << "inside the frame";
    }
    EXPECT_EQ(DtTime::fromSeconds(-0.01, Rational(25, 1)).getIndex(), DtTimeIndex(-1));
    EXPECT_THROW(DtTime().getSeconds(), DtTimeEx::ExNoRate); // 0/1 is the unspecified rate
    EXPECT_THROW(DtTime::fromSeconds(1.0, Rational(-25, 1)), DtTimeEx::ExNoRate);
    EXPECT_THROW(DtTime::fromSeconds(std::nan(""), Rational(25, 1)), DtTimeEx::ExBadTime);
    EXPECT_THROW(DtTime::fromSeconds(1e300, Rational(25, 1)), DtTimeEx::ExBadTime);
}

} // namespace
