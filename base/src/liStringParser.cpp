#include "liStringParser.h"

#include "liStringEx.h"

#include <fmt/format.h>

namespace Qv {

bool LiStringParser::splitString(std::string_view text, std::string_view separator, std::string& head,
                                 std::string& rest) {
    if (separator.empty())
        throw LiStringEx::ExInvalidArgument(__FILE__, __LINE__,
                                            fmt::format("cannot split \"{}\" at an empty separator", text));
    std::size_t const pos = text.find(separator);
    if (pos == std::string_view::npos) {
        // Assign through temporaries: text may view head or rest.
        std::string whole(text);
        head.clear();
        rest = std::move(whole);
        return false;
    }
    std::string before(text.substr(0, pos));
    std::string after(text.substr(pos + separator.size()));
    head = std::move(before);
    rest = std::move(after);
    return true;
}

} // namespace Qv
