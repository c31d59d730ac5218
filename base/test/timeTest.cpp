#include "dtTime.h"
#include "rational.h"

#include <climits>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

using namespace Qv;

namespace {

TEST(RationalTest, KeepsTermsAsGivenAndComparesByValue) {
    Rational const ntsc(30000, 1001);
    EXPECT_EQ(ntsc.getNumerator(), 30000);
    EXPECT_EQ(ntsc.getDenominator(), 1001);
    EXPECT_FLOAT_EQ(ntsc.getFloat(), 29.97003f);

    EXPECT_EQ(Rational(2, 4), Rational(1, 2));
    EXPECT_NE(Rational(1, 2), Rational(1, 3));
    EXPECT_LT(Rational(1, 3), Rational(1, 2));
    EXPECT_LT(Rational(-1, 2), Rational());
    EXPECT_EQ(Rational(), Rational(0, 7));
    EXPECT_TRUE(Rational().isZero());

    Rational const negative(3, -6); // the sign moves to the numerator
    EXPECT_EQ(negative.getNumerator(), -3);
    EXPECT_EQ(negative.getDenominator(), 6);
    EXPECT_EQ(negative.getReduced().getNumerator(), -1);
    EXPECT_EQ(negative.getReduced().getDenominator(), 2);
}

TEST(RationalTest, ZeroDenominatorsAndOverflowThrow) {
    EXPECT_THROW(Rational(1, 0), RationalEx::ExDivisionByZero);
    Rational r;
    EXPECT_THROW(r.setValue(5, 0), RationalEx::ExDivisionByZero);
    EXPECT_THROW(r.setLargeValue(5, 0), RationalEx::ExDivisionByZero);
    EXPECT_THROW(r.setValue(INT_MIN, -1), RationalEx::ExOverflow);
    EXPECT_THROW(r.setLargeValue(1LL << 40, 3), RationalEx::ExOverflow);
    EXPECT_EQ(r, Rational()); // a refused value leaves the old one
}

TEST(RationalTest, LargeValuesAreReduced) {
    struct Case {
        long long num, den;
        int expectedNum, expectedDen;
    } const cases[] = {
        {30000000000LL, 1001000000LL, 30000, 1001},
        {-48000000000LL, 2000000000LL, -24, 1},
        {6, -4, -3, 2},
        {0, 123456789012LL, 0, 1},
        {static_cast<long long>(INT_MIN), 1, INT_MIN, 1},
        {LLONG_MIN, LLONG_MIN, 1, 1},
    };
    for (auto const& c : cases) {
        Rational r;
        r.setLargeValue(c.num, c.den);
        EXPECT_EQ(r.getNumerator(), c.expectedNum) << c.num << '/' << c.den;
        EXPECT_EQ(r.getDenominator(), c.expectedDen) << c.num << '/' << c.den;
    }
}

TEST(RationalUtilTest, ReadsFractionTexts) {
    struct Case {
        char const* text;
        int num, den;
    } const cases[] = {{"16:9", 16, 9}, {"1:1", 1, 1}, {" 10 : 11 ", 10, 11}, {"2", 2, 1}, {"-4:3", -4, 3}};
    for (auto const& c : cases) {
        Rational const r = RationalUtil::fromFractionString(c.text, ":");
        EXPECT_EQ(r.getNumerator(), c.num) << c.text;
        EXPECT_EQ(r.getDenominator(), c.den) << c.text;
    }
    for (char const* bad : {"", ":", "16:", "a:b", "1.5:1", "16/9", "1:2:3"}) {
        try {
            RationalUtil::fromFractionString(bad, ":");
            ADD_FAILURE() << "accepted \"" << bad << '"';
        } catch (RationalEx::ExBadFraction const& ex) {
            EXPECT_NE(ex.getReason().find('"' + std::string(bad) + '"'), std::string::npos) << ex.getReason();
        }
    }
    EXPECT_THROW(RationalUtil::fromFractionString("4:0", ":"), RationalEx::ExDivisionByZero);
}

TEST(RationalUtilTest, RatesBecomeTheirExactRatio) {
    struct Case {
        double rate;
        int num, den;
    } const cases[] = {
        {29.97, 30000, 1001}, {23.976, 24000, 1001}, {59.94, 60000, 1001}, {29.97002997, 30000, 1001},
        {25.0, 25, 1},        {24.0, 24, 1},         {12.5, 25, 2},        {0.0, 0, 1},
        {29.5, 59, 2},        {1.0 / 3.0, 1, 3},     {120.0, 120, 1},      {7.25, 29, 4},
    };
    for (auto const& c : cases) {
        Rational const r = RationalUtil::fromRate(c.rate);
        EXPECT_EQ(r.getNumerator(), c.num) << c.rate;
        EXPECT_EQ(r.getDenominator(), c.den) << c.rate;
    }
    EXPECT_THROW(RationalUtil::fromRate(-25.0), RationalEx::ExBadRate);
    EXPECT_THROW(RationalUtil::fromRate(std::nan("")), RationalEx::ExBadRate);
    EXPECT_THROW(RationalUtil::fromRate(std::numeric_limits<double>::infinity()), RationalEx::ExBadRate);
    EXPECT_THROW(RationalUtil::fromRate(1e12), RationalEx::ExOverflow);
}

TEST(DtTimeIndexTest, CountsFrames) {
    DtTimeIndex const start(10);
    DtTimeIndex const end(20);
    EXPECT_EQ(end - start, 10);
    EXPECT_EQ(end - 1, DtTimeIndex(19));
    EXPECT_EQ(std::min(std::max(DtTimeIndex(25), start), end - 1), DtTimeIndex(19)); // poster clamp
    DtTimeIndex t;
    EXPECT_EQ((++t).getValue(), 1);
    EXPECT_LT(DtTimeIndex(-5), t);
}

TEST(DtTimeTest, ConvertsBetweenFramesAndSeconds) {
    Rational const ntsc(30000, 1001);
    struct Case {
        std::int64_t index;
        Rational rate;
    } const cases[] = {{0, Rational(25, 1)}, {1, Rational(25, 1)}, {-7, Rational(24, 1)}, {1000, ntsc},
                       {107892, ntsc},       {-1, ntsc},           {3, Rational(1, 2)}};
    for (auto const& c : cases) {
        DtTime const time(DtTimeIndex(c.index), c.rate);
        double const seconds = time.getSeconds();
        EXPECT_DOUBLE_EQ(seconds,
                         static_cast<double>(c.index) * c.rate.getDenominator() / c.rate.getNumerator());
        EXPECT_EQ(DtTime::fromSeconds(seconds, c.rate), time) << c.index << " at " << c.rate;
        // Anywhere inside the frame is that frame.
        double const frame = static_cast<double>(c.rate.getDenominator()) / c.rate.getNumerator();
        EXPECT_EQ(DtTime::fromSeconds(seconds + 0.5 * frame, c.rate), time) << c.index << " at " << c.rate;
    }
    EXPECT_EQ(DtTime::fromSeconds(-0.01, Rational(25, 1)).getIndex(), DtTimeIndex(-1));
}

TEST(DtTimeTest, NoRateOrBadSecondsThrow) {
    EXPECT_THROW(DtTime().getSeconds(), DtTimeEx::ExNoRate); // 0/1 is the unspecified rate
    EXPECT_THROW(DtTime::fromSeconds(1.0, Rational()), DtTimeEx::ExNoRate);
    EXPECT_THROW(DtTime::fromSeconds(1.0, Rational(-25, 1)), DtTimeEx::ExNoRate);
    EXPECT_THROW(DtTime::fromSeconds(std::nan(""), Rational(25, 1)), DtTimeEx::ExBadTime);
    EXPECT_THROW(DtTime::fromSeconds(1e300, Rational(25, 1)), DtTimeEx::ExBadTime);
}

} // namespace
