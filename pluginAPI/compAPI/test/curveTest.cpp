// Values over time: what a curve gives at a time, and for how long it holds.
#include "piCurve.h"
#include "piEx.h"
#include "piVariant.h"

#include <gtest/gtest.h>

using namespace Qv;

TEST(PiCurve, InterpolatesBetweenKeyframesAndHoldsOutside) {
    PiCurve<double> linear(5.0, true);
    linear.setKey(2.0, 30.0);
    linear.setKey(0.0, 10.0);
    PiCurve<int> integer(0, true);
    integer.setKey(0.0, 0);
    integer.setKey(4.0, 3);
    PiCurve<double> held(0.0, false);
    held.setKey(0.0, 1.0);
    held.setKey(1.0, 2.0);
    constexpr double lo = PxValidityInterval::TIME_MIN;
    constexpr double hi = PxValidityInterval::TIME_MAX;
    struct Case {
        char const* what;
        PxResult<double> result;
        double value;
        PxValidityInterval interval;
    };
    Case const cases[] = {
        {"before the first key", linear.evaluate(-3.0), 10.0, {lo, 0.0}},
        {"on the first key", linear.evaluate(0.0), 10.0, {lo, 0.0}},
        {"between keys", linear.evaluate(0.5), 15.0, {0.5, 0.5}},
        {"after the last key", linear.evaluate(9.0), 30.0, {2.0, hi}},
        {"held between keys", held.evaluate(0.5), 1.0, {0.0, std::nextafter(1.0, 0.0)}},
        {"integer, rounded",
         [&] {
             PxResult<int> r = integer.evaluate(2.0);
             return PxResult<double>(r.getValue(), r.getVI());
         }(),
         2.0,
         {2.0, 2.0}},
    };
    for (Case const& c : cases) {
        EXPECT_DOUBLE_EQ(c.result.getValue(), c.value) << c.what;
        EXPECT_EQ(c.result.getVI(), c.interval) << c.what;
    }
    PiCurve<double> constant(0.25, true);
    EXPECT_EQ(constant.evaluate(100.0).getVI(), PxValidityInterval::FULL);
    linear.setConstant(4.0);
    EXPECT_FALSE(linear.isAnimated()) << "a constant drops the keyframes";
    EXPECT_TRUE(held.removeKey(1.0));
    EXPECT_FALSE(held.removeKey(1.0));
}

TEST(PiVariantUtil, ReadsTheTextOfEachTypeAndRefusesOtherText) {
    struct Case {
        PiSocketType type;
        char const* text;
        PiVariant value; // empty: refused
    };
    Case const cases[] = {
        {PiSocketType::DOUBLE, "0.25", 0.25},  {PiSocketType::DOUBLE, " -7.5e1 ", -75.0},
        {PiSocketType::DOUBLE, "+1", {}},      {PiSocketType::DOUBLE, "1,5", {}},
        {PiSocketType::DOUBLE, "nan", {}},     {PiSocketType::DOUBLE, "", {}},
        {PiSocketType::INTEGER, "42", 42},     {PiSocketType::INTEGER, "4.2", {}},
        {PiSocketType::BOOLEAN, "true", true}, {PiSocketType::BOOLEAN, "0", false},
        {PiSocketType::BOOLEAN, "yes", {}},    {PiSocketType::STRING, "a b", std::string("a b")},
    };
    for (Case const& c : cases) {
        if (std::holds_alternative<std::monostate>(c.value)) {
            EXPECT_THROW(PiVariantUtil::fromString(c.type, c.text), PiEx::ExBadValue) << c.text;
        } else {
            EXPECT_EQ(PiVariantUtil::fromString(c.type, c.text), c.value) << c.text;
        }
    }
    // Shortest text that reads back to the same double.
    for (double value : {0.1, 1.0 / 3.0, 7.5, -0.0, 1e300})
        EXPECT_EQ(PiVariantUtil::fromString(PiSocketType::DOUBLE, PiVariantUtil::toString(value)),
                  PiVariant(value));
    EXPECT_EQ(PiVariantUtil::toString(std::vector<double>{1, 0.5}), "1 0.5");
    EXPECT_EQ(PiVariantUtil::fromString(PiValueType::DOUBLE_ARRAY, "1 0.5"),
              PiVariant(std::vector<double>{1, 0.5}));
}
