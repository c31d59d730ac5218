#include "inVariable.h"

#include <cstdlib>
#include <gtest/gtest.h>

using namespace Qv;

namespace {
char const* const kAlias = "QV_TEST_VARIABLE_DIGITS";

// Sets or clears the alias for one test and restores it afterwards.
class ScopedEnv {
public:
    explicit ScopedEnv(char const* value) {
        if (value)
            setenv(kAlias, value, 1);
        else
            unsetenv(kAlias);
    }
    ~ScopedEnv() { unsetenv(kAlias); }
};
} // namespace

TEST(InVariable, EnvironmentAliasGivesTheValueOnlyWhenItParses) {
    struct Case {
        char const* text;
        bool valid;
        unsigned short value;
    };
    Case const cases[] = {
        {nullptr, false, 0}, {"7", true, 7}, {"65535", true, 65535}, {"65536", false, 0},
        {"-1", false, 0},    {"", false, 0}, {"4x", false, 0},       {" 4", false, 0},
    };
    InVariable<unsigned short> digits("test::digits", "Digits of a test.",
                                      InContextAlias<InInitEnv, 0>(kAlias));
    for (Case const& c : cases) {
        SCOPED_TRACE(c.text ? c.text : "(unset)");
        ScopedEnv env(c.text);
        EXPECT_EQ(digits.isValid(), c.valid);
        if (c.valid)
            EXPECT_EQ(digits.getValue(), c.value);
        else
            EXPECT_THROW(digits.getValue(), InVariableEx::ExNotValid);
    }
}

TEST(InVariable, ValueIsReadWhenAskedNotAtConstruction) {
    ScopedEnv unset(nullptr);
    InVariable<bool> flag("test::flag", "A flag.", InContextAlias<InInitEnv, 0>(kAlias));
    EXPECT_FALSE(flag.isValid());
    setenv(kAlias, "yes", 1);
    ASSERT_TRUE(flag.isValid());
    EXPECT_TRUE(flag.getValue());
    EXPECT_EQ(flag.getAliasName(), kAlias);
}

TEST(InVariable, NotValidErrorNamesKeyAndAlias) {
    ScopedEnv env("abc");
    InVariable<int> number("test::number", "A number.", InContextAlias<InInitEnv, 0>(kAlias));
    try {
        number.getValue();
        FAIL();
    } catch (InVariableEx::ExNotValid const& error) {
        EXPECT_NE(error.getReason().find("test::number"), std::string::npos);
        EXPECT_NE(error.getReason().find(kAlias), std::string::npos);
        EXPECT_NE(error.getReason().find("abc"), std::string::npos);
    }
}
