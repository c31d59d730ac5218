#include "assertions.h"

#include <gtest/gtest.h>

using namespace Qv;

namespace {
struct FamilyEx {
    QV_DECLARE_EX(ExSpecific, ExBase);
};

int checkPositive(int value) {
    QV_ASSERT(value > 0 && "value must be positive");
    return value;
}
} // namespace

TEST(Assertions, FailedCheckThrowsWithTheExpressionTextFileAndLine) {
    try {
        checkPositive(-1);
        FAIL();
    } catch (AssertionsEx::ExAssertionFailed const& error) {
        EXPECT_STREQ(error.what(), "value > 0 && \"value must be positive\"");
        EXPECT_NE(error.getFile().find("assertionTest.cpp"), std::string::npos);
        EXPECT_GT(error.getLine(), 0);
    }
    EXPECT_EQ(checkPositive(3), 3);
}

TEST(Assertions, ProgramAbortedCarriesItsText) {
    try {
        Assertions::throwProgramAborted("f.cpp", 12, "no way on");
        FAIL();
    } catch (AssertionsEx::ExProgramAborted const& error) {
        EXPECT_EQ(error.getReason(), "no way on");
        EXPECT_EQ(error.getFile(), "f.cpp");
        EXPECT_EQ(error.getLine(), 12);
    }
}

TEST(Assertions, ReportedFailureGoesToTheHandlerAndDoesNotThrow) {
    std::string seen;
    auto previous = Assertions::setReportHandler([&](char const*, int, char const* text) { seen = text; });
    EXPECT_NO_THROW(QV_ASSERT_REPORT(1 + 1 == 3));
    QV_ASSERT_REPORT(2 == 2);
    Assertions::setReportHandler(previous);
    EXPECT_EQ(seen, "1 + 1 == 3");
}

TEST(ExBase, CloneAndRaiseKeepTheDynamicType) {
    FamilyEx::ExSpecific original("here.cpp", 7, "specific trouble");
    OPtrRet<ExBase> copy = static_cast<ExBase const&>(original).clone();
    EXPECT_EQ(copy->getReason(), "specific trouble");
    EXPECT_THROW(copy->raise(), FamilyEx::ExSpecific);
    // Kept as its root, a copy still raises as what it was.
    try {
        copy->raise();
    } catch (ExBase const& error) {
        EXPECT_EQ(error.getLine(), 7);
        EXPECT_NE(dynamic_cast<FamilyEx::ExSpecific const*>(&error), nullptr);
    }
}
