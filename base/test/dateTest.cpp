#include "liDate.h"
#include "liDateFormat.h"

#include <gtest/gtest.h>

using namespace Qv;

namespace {

TEST(LiDateFormatTest, StoredTextRoundTripsToTheSecond) {
    struct Case {
        std::int64_t seconds;
        char const* text;
    } const cases[] = {
        {1339520350, "2012-06-12T16:59:10Z"},  {0, "1970-01-01T00:00:00Z"},
        {951868799, "2000-02-29T23:59:59Z"},   {-1, "1969-12-31T23:59:59Z"},
        {-2208988800, "1900-01-01T00:00:00Z"}, {253402300799, "9999-12-31T23:59:59Z"},
        {2147483648, "2038-01-19T03:14:08Z"}, // past the 32-bit limit
    };
    for (auto const& c : cases) {
        LiDate const date = LiDate::fromSecondsSinceEpoch(c.seconds);
        EXPECT_EQ(LiDateFormat::format(date), c.text);
        EXPECT_EQ(LiDateFormat::parse(c.text), date) << c.text;
    }
    LiDate const now = LiDate::now();
    EXPECT_EQ(LiDateFormat::parse(LiDateFormat::format(now)), now);
}

TEST(LiDateFormatTest, BadTextIsRefusedWithTheTextQuoted) {
    char const* const cases[] = {
        "",
        "2012-06-12 16:59:10",   // local form, no zone
        "2012-06-12T16:59:10",   // zone missing
        "2012-06-12T16:59:10z",  // zone letter in lower case
        "2012-6-12T16:59:10Z",   // field not zero filled
        "2012-13-01T00:00:00Z",  // month
        "2011-02-29T00:00:00Z",  // not a leap year
        "2012-04-31T00:00:00Z",  // April has 30 days
        "2012-06-12T24:00:00Z",  // hour
        "2012-06-12T16:60:00Z",  // minute
        "2012-06-12T16:59:60Z",  // leap seconds are not kept
        "2012-06-12T16:59:10Z ", // trailing space
        "20x2-06-12T16:59:10Z",
    };
    for (char const* text : cases) {
        try {
            LiDateFormat::parse(text);
            ADD_FAILURE() << "accepted \"" << text << '"';
        } catch (LiDateEx::ExBadDate const& ex) {
            EXPECT_NE(ex.getReason().find('"' + std::string(text) + '"'), std::string::npos)
                << ex.getReason();
        }
    }
}

TEST(LiDateTest, LocalFieldsGiveFileNameTokens) {
    LiDate const date = LiDate::fromLocalFields(2012, 6, 12, 16, 59, 10);
    EXPECT_EQ(date.getYear(), 2012);
    EXPECT_EQ(date.getMonth(), 6);
    EXPECT_EQ(date.getDay(), 12);
    EXPECT_EQ(date.getHour(), 16);
    EXPECT_EQ(date.getMinute(), 59);
    EXPECT_EQ(date.getSecond(), 10);
    EXPECT_EQ(date.toString("%y-%m-%d"), "12-06-12");
    EXPECT_EQ(date.toString("%H%M%S"), "165910");
    EXPECT_EQ(date.toString(), "2012-06-12 16:59:10");
    EXPECT_EQ(date.toString(""), "");
    EXPECT_EQ(date.toString("100%%"), "100%");
    EXPECT_THROW(date.toString("%H%"), LiDateEx::ExBadFormat);
}

TEST(LiDateTest, OrdersByMomentAndDropsFractionsOfSeconds) {
    using namespace std::chrono;
    auto const base = system_clock::time_point(seconds(1339520350));
    EXPECT_EQ(LiDate(base + milliseconds(999)), LiDate(base));
    EXPECT_LT(LiDate(base), LiDate(base + seconds(1)));
    EXPECT_EQ(LiDate(base - milliseconds(1)).getSecondsSinceEpoch(), 1339520349); // rounds down
    EXPECT_EQ(LiDate(base).toTimePoint(), base);
    LiDate const before = LiDate::now();
    EXPECT_LE(before, LiDate::now());
}

TEST(LiDateTest, InvalidFieldsAreRefused) {
    struct Case {
        int year, month, day, hour, minute, second;
    } const cases[] = {
        {2012, 0, 1, 0, 0, 0},   {2012, 13, 1, 0, 0, 0},  {2011, 2, 29, 0, 0, 0},  {2012, 6, 0, 0, 0, 0},
        {2012, 6, 12, 24, 0, 0}, {2012, 6, 12, -1, 0, 0}, {2012, 6, 12, 0, 60, 0}, {2012, 6, 12, 0, 0, 60},
        {1899, 12, 31, 0, 0, 0}, {10000, 1, 1, 0, 0, 0},
    };
    for (auto const& c : cases)
        EXPECT_THROW(LiDate::fromLocalFields(c.year, c.month, c.day, c.hour, c.minute, c.second),
                     LiDateEx::ExInvalidDate)
            << c.year << '-' << c.month << '-' << c.day << ' ' << c.hour << ':' << c.minute << ':'
            << c.second;
}

} // namespace
