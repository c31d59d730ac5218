#include "liDateFormat.h"

#include <chrono>
#include <fmt/format.h>

namespace Qv {

namespace {
using namespace std::chrono;

constexpr std::string_view kShape = "dddd-dd-ddTdd:dd:ddZ";

[[noreturn]] void throwBadDate(std::string_view text, std::string_view why) {
    throw LiDateEx::ExBadDate(
        __FILE__, __LINE__,
        fmt::format("bad date \"{}\": {} (expected the form YYYY-MM-DDTHH:MM:SSZ)", text, why));
}

int digitsAt(std::string_view text, std::size_t pos, std::size_t count) {
    int value = 0;
    for (std::size_t i = pos; i < pos + count; ++i)
        value = value * 10 + (text[i] - '0');
    return value;
}
} // namespace

std::string LiDateFormat::format(LiDate const& date) {
    sys_seconds const time{seconds(date.getSecondsSinceEpoch())};
    sys_days const day = floor<days>(time);
    year_month_day const ymd{day};
    hh_mm_ss<seconds> const hms{time - day};
    int const year = static_cast<int>(ymd.year());
    if (year < 0 || year > 9999)
        throw LiDateEx::ExInvalidDate(
            __FILE__, __LINE__,
            fmt::format("{} seconds since 1970 has no four-digit year", date.getSecondsSinceEpoch()));
    return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}Z", year, static_cast<unsigned>(ymd.month()),
                       static_cast<unsigned>(ymd.day()), hms.hours().count(), hms.minutes().count(),
                       hms.seconds().count());
}

LiDate LiDateFormat::parse(std::string_view text) {
    if (text.size() != kShape.size())
        throwBadDate(text, "wrong length");
    for (std::size_t i = 0; i < kShape.size(); ++i) {
        bool const ok = kShape[i] == 'd' ? (text[i] >= '0' && text[i] <= '9') : text[i] == kShape[i];
        if (!ok)
            throwBadDate(text, fmt::format("unexpected character at position {}", i + 1));
    }
    year_month_day const ymd{year(digitsAt(text, 0, 4)), month(static_cast<unsigned>(digitsAt(text, 5, 2))),
                             day(static_cast<unsigned>(digitsAt(text, 8, 2)))};
    int const hour = digitsAt(text, 11, 2);
    int const minute = digitsAt(text, 14, 2);
    int const second = digitsAt(text, 17, 2);
    if (!ymd.ok())
        throwBadDate(text, "no such day");
    if (hour > 23 || minute > 59 || second > 59)
        throwBadDate(text, "no such time of day");
    sys_seconds const time = sys_days(ymd) + hours(hour) + minutes(minute) + seconds(second);
    return LiDate::fromSecondsSinceEpoch(time.time_since_epoch().count());
}

} // namespace Qv
