#pragma once
// A moment, to the second. Whole seconds keep a stored date and the date read
// back from its text equal, and two evaluations within one second give the
// same file names. Fields and toString are in the machine's local time, since
// they name files for the user; the stored form of LiDateFormat is not.
#include "exBase.h"

#include <chrono>
#include <compare>
#include <cstdint>
#include <string>
#include <string_view>

namespace Qv {

struct LiDateEx {
    // A date text that LiDateFormat cannot read; the reason quotes it.
    QV_DECLARE_EX(ExBadDate, ExBase);
    // Calendar fields that name no date, or a date out of the supported range.
    QV_DECLARE_EX(ExInvalidDate, ExBase);
    // A toString format that cannot be applied.
    QV_DECLARE_EX(ExBadFormat, ExBase);
};

class LiDate {
public:
    // 1970-01-01 00:00:00 UTC.
    LiDate() = default;
    // Rounds down to the whole second.
    explicit LiDate(std::chrono::system_clock::time_point time);

    static LiDate now();
    static LiDate fromSecondsSinceEpoch(std::int64_t seconds) { return LiDate(seconds); }
    // Local calendar fields, month and day from 1. Throws LiDateEx::ExInvalidDate.
    static LiDate fromLocalFields(int year, int month, int day, int hour, int minute, int second);

    std::int64_t getSecondsSinceEpoch() const { return _seconds; }
    std::chrono::system_clock::time_point toTimePoint() const;

    // Local time fields.
    int getYear() const;
    int getMonth() const; // 1 to 12
    int getDay() const;   // 1 to 31
    int getHour() const;
    int getMinute() const;
    int getSecond() const;

    // "YYYY-MM-DD HH:MM:SS" in local time.
    std::string toString() const;
    // strftime conversions in local time, for instance "%y-%m-%d" or "%H%M%S".
    // A format ending in a lone '%' throws LiDateEx::ExBadFormat.
    std::string toString(std::string_view format) const;

    friend auto operator<=>(LiDate const&, LiDate const&) = default;

private:
    explicit LiDate(std::int64_t seconds) : _seconds(seconds) {}

    std::int64_t _seconds = 0;
};

} // namespace Qv
