#include "liDate.h"

#include <ctime>
#include <fmt/format.h>

namespace Qv {

namespace {
std::tm toLocal(std::int64_t seconds) {
    std::time_t const t = static_cast<std::time_t>(seconds);
    std::tm fields{};
    if (!localtime_r(&t, &fields))
        throw LiDateEx::ExInvalidDate(__FILE__, __LINE__,
                                      fmt::format("{} seconds since 1970 is no representable date", seconds));
    return fields;
}
} // namespace

LiDate::LiDate(std::chrono::system_clock::time_point time)
    : _seconds(std::chrono::floor<std::chrono::seconds>(time).time_since_epoch().count()) {}

LiDate LiDate::now() {
    return LiDate(std::chrono::system_clock::now());
}

LiDate LiDate::fromLocalFields(int year, int month, int day, int hour, int minute, int second) {
    using namespace std::chrono;
    year_month_day const ymd{std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
                             std::chrono::day(static_cast<unsigned>(day))};
    if (!ymd.ok() || year < 1900 || year > 9999 || hour < 0 || hour > 23 || minute < 0 || minute > 59 ||
        second < 0 || second > 59)
        throw LiDateEx::ExInvalidDate(__FILE__, __LINE__,
                                      fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02} is not a valid date",
                                                  year, month, day, hour, minute, second));
    std::tm fields{};
    fields.tm_year = year - 1900;
    fields.tm_mon = month - 1;
    fields.tm_mday = day;
    fields.tm_hour = hour;
    fields.tm_min = minute;
    fields.tm_sec = second;
    fields.tm_isdst = -1; // let the time zone rules decide
    std::time_t const t = std::mktime(&fields);
    // -1 is both the failure value and one second before 1970 UTC.
    if (t == static_cast<std::time_t>(-1) && toLocal(-1).tm_year != year - 1900)
        throw LiDateEx::ExInvalidDate(
            __FILE__, __LINE__,
            fmt::format("{:04}-{:02}-{:02} is out of the supported range", year, month, day));
    return LiDate(static_cast<std::int64_t>(t));
}

std::chrono::system_clock::time_point LiDate::toTimePoint() const {
    return std::chrono::system_clock::time_point(std::chrono::seconds(_seconds));
}

int LiDate::getYear() const {
    return toLocal(_seconds).tm_year + 1900;
}
int LiDate::getMonth() const {
    return toLocal(_seconds).tm_mon + 1;
}
int LiDate::getDay() const {
    return toLocal(_seconds).tm_mday;
}
int LiDate::getHour() const {
    return toLocal(_seconds).tm_hour;
}
int LiDate::getMinute() const {
    return toLocal(_seconds).tm_min;
}
int LiDate::getSecond() const {
    return toLocal(_seconds).tm_sec;
}

std::string LiDate::toString() const {
    return toString("%Y-%m-%d %H:%M:%S");
}

std::string LiDate::toString(std::string_view format) const {
    // A lone '%' at the end is undefined for strftime.
    std::size_t percents = 0;
    for (std::size_t i = format.size(); i > 0 && format[i - 1] == '%'; --i)
        ++percents;
    if (percents % 2 != 0)
        throw LiDateEx::ExBadFormat(__FILE__, __LINE__,
                                    fmt::format("the date format \"{}\" ends with a lone '%'", format));
    if (format.empty())
        return {};
    std::tm const fields = toLocal(_seconds);
    // strftime cannot tell an empty result from a short buffer: a leading space
    // in the format keeps the result non-empty, and is dropped afterwards.
    std::string const spaced = " " + std::string(format);
    std::string buffer(64 + 4 * format.size(), '\0');
    for (int attempt = 0; attempt < 4; ++attempt, buffer.resize(buffer.size() * 4)) {
        std::size_t const n = std::strftime(buffer.data(), buffer.size(), spaced.c_str(), &fields);
        if (n > 0)
            return buffer.substr(1, n - 1);
    }
    throw LiDateEx::ExBadFormat(__FILE__, __LINE__,
                                fmt::format("the date format \"{}\" gives too long a text", format));
}

} // namespace Qv
