// What each kind of policy lets an input take.
#include "piEnumPolicy.h"
#include "piImageInputPolicy.h"
#include "piRangeInputPolicy.h"
#include "piSwitchInputPolicy.h"
#include "piTimeOffsetInputPolicy.h"

#include <gtest/gtest.h>

using namespace Qv;

TEST(PiInputPolicy, DecidesWhichValuesAnInputTakes) {
    auto range = PiRangeInputPolicy<double>::create(0.0, 1.0, 0.0, true, false);
    auto intRange = PiRangeInputPolicy<int>::create(1, 5, 3, false, false);
    auto choice = PiEnumPolicy::Builder().addPair(2, "Two").addPair(4, "Four").setDefaultValue(4).create();
    auto onOff = PiSwitchInputPolicy::create(true, false, true);
    auto offset = PiTimeOffsetInputPolicy::getInstance();
    auto image = PiImageInputPolicy::createPrimary(1, 7, 1, PiImageInputPolicy::RESET_NONE, false);
    struct Case {
        char const* what;
        RCShdPtr<PiInputPolicy const> policy;
        PiVariant value;
        bool accepted;
    };
    Case const cases[] = {
        {"range, inside", range, 0.25, true},
        {"range, at the maximum", range, 1.0, true},
        {"range, above", range, 7.5, false},
        {"range, below", range, -0.001, false},
        {"range, another type", range, 1, false},
        {"integer range, inside", intRange, 5, true},
        {"integer range, outside", intRange, 6, false},
        {"enumeration, a listed value", choice, 2, true},
        {"enumeration, between values", choice, 3, false},
        {"switch", onOff, false, true},
        {"time offset, far", offset, -100000, true},
        {"image", image, 0.0, false},
    };
    for (Case const& c : cases)
        EXPECT_EQ(c.policy->canSetValue(c.value), c.accepted) << c.what;

    EXPECT_EQ(range->getDefault(), PiVariant(0.0));
    EXPECT_EQ(intRange->getDefault(), PiVariant(3));
    EXPECT_EQ(choice->getDefault(), PiVariant(4));
    EXPECT_EQ(onOff->getDefault(), PiVariant(true));
    EXPECT_EQ(range->describeAcceptedValues(), "from 0 to 1");
    EXPECT_EQ(choice->describeAcceptedValues(), "one of 2 (Two), 4 (Four)");
    EXPECT_EQ(choice->getDomainLabel(4), "Four");
    EXPECT_TRUE(range->canAnimate());
    EXPECT_FALSE(image->canAnimate());
    EXPECT_TRUE(image->isPrimary());
    EXPECT_EQ(range->getDefaultInterpolationType(), PiInputPolicy::INTERPOLATION_LINEAR);
    EXPECT_EQ(onOff->getDefaultInterpolationType(), PiInputPolicy::INTERPOLATION_CONSTANT);
}

TEST(PiInputPolicy, DefaultPoliciesTakeEveryValueOfTheirType) {
    for (auto type :
         {PiSocketType::BOOLEAN, PiSocketType::DOUBLE, PiSocketType::INTEGER, PiSocketType::STRING}) {
        auto policy = PiInputPolicy::getDefaultPolicy(type);
        EXPECT_TRUE(policy->isPassAll()) << PiSocketType::typeToString(type);
        EXPECT_TRUE(policy->hasSameType(type));
        EXPECT_TRUE(policy->canSetValue(PiVariantUtil::getZero(type)));
    }
    EXPECT_FALSE(PiInputPolicy::getDefaultPolicy(PiSocketType::DOUBLE)->canSetValue(std::string("0.5")));
}
