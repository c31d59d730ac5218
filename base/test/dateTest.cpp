#include "baseTestHelpers.h"
#include "liDate.h"
#include "liDateFormat.h"

#include <gtest/gtest.h>

using namespace Qv;
using namespace Qv::TestHelpers;

namespace {

TEST(LiDateFormatTest, StoredTextRoundTripsToTheSecond) {
    struct Case {
        std::int64_t seconds;
        char const* text;
    } const cases[] = {{1339520350, "2012-06-12T16:59:10Z"},   {951868799, "2000-02-29T23:59:59Z"},
                       {-1, "1969-12-31T23:59:59Z"},           {-2208988800, "1900-01-01T00:00:00Z"},
                       {253402300799, "9999-12-31T23:59:59Z"}, {2147483648, "2038-01-19T03:14:08Z"}};
    for (auto const& c : cases) {
        LiDate const date = LiDate::fromSecondsSinceEpoch(c.seconds);
        EXPECT_EQ(LiDateFormat::format(date), c.text);
        EXPECT_EQ(LiDateFormat::parse(c.text), date) << c.text;
    }
    using namespace std::chrono;
    auto const base = system_clock::time_point(seconds(1339520350));
    EXPECT_EQ(LiDate(base - milliseconds(1)).getSecondsSinceEpoch(), 1339520349) << "fractions round down";
    EXPECT_EQ(LiDate(base + milliseconds(999)), LiDate(base));
    LiDate const now = LiDate::now();
    EXPECT_EQ(LiDateFormat::parse(LiDateFormat::format(now)), now);
}

TEST(LiDateFormatTest, BadTextIsRefusedWithTheTextQuoted) {
    // No zone or a lower-case one, fields not zero filled, days that do not exist, hour 24, a leap
    // second (not kept), a trailing space, a truncated or empty text.
    char const* const cases[] = {"2012-06-12 16:59:10",  "2012-06-12T16:59:10z",  "2012-6-12T16:59:10Z",
                                 "2011-02-29T00:00:00Z", "2012-04-31T00:00:00Z",  "2012-06-12T24:00:00Z",
                                 "2012-06-12T16:59:60Z", "2012-06-12T16:59:10Z ", "2012"};
    for (char const* text : cases)
        EXPECT_TRUE(throwsWith<LiDateEx::ExBadDate>([&] { LiDateFormat::parse(text); },
                                                    '"' + std::string(text) + '"'));
    EXPECT_THROW(LiDateFormat::parse(""), LiDateEx::ExBadDate);
}

TEST(LiDateTest, LocalFieldsGiveFileNameTokens) {
    LiDate const date = LiDate::fromLocalFields(2012, 6, 12, 16, 59, 10);
    EXPECT_EQ(date.toString("%y-%m-%d %H%M%S 100%%"), "12-06-12 165910 100%");
    EXPECT_EQ(date.toString(), "2012-06-12 16:59:10");
    EXPECT_THROW(date.toString("%H%"), LiDateEx::ExBadFormat);
    struct Case {
        int year, month, day, hour, minute, second;
    } const invalid[] = {{2012, 13, 1, 0, 0, 0},  {2011, 2, 29, 0, 0, 0},  {2012, 6, 0, 0, 0, 0},
                         {2012, 6, 12, 24, 0, 0}, {2012, 6, 12, -1, 0, 0}, {2012, 6, 12, 0, 0, 60},
                         {1899, 12, 31, 0, 0, 0}, {10000, 1, 1, 0, 0, 0}};
    for (auto const& c : invalid)
        EXPECT_THROW(LiDate::fromLocalFields(c.year, c.month, c.day, c.hour, c.minute, c.second),
                     LiDateEx::ExInvalidDate)
            << c.year << '-' << c.month << '-' << c.day << ' ' << c.hour << ':' << c.second;
}

} // namespace
