#pragma once
// The stored text of a date, as kept in a node's values: ISO 8601 in UTC,
// "2012-06-12T16:59:10Z". UTC keeps a stored date the same moment when the
// project moves to another time zone or across a daylight-saving change, and
// the text reads back to the same LiDate, to the second.
#include "liDate.h"

#include <string>
#include <string_view>

namespace Qv {

struct LiDateFormat {
    static std::string format(LiDate const& date);
    // Accepts exactly the form that format writes. Anything else throws
    // LiDateEx::ExBadDate quoting the text.
    static LiDate parse(std::string_view text);
};

} // namespace Qv
