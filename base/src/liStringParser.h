#pragma once
// Cutting a reference such as "Group.Node.Value" one level at a time.
#include <string>
#include <string_view>

namespace Qv {

struct LiStringParser {
    // Splits text at the first occurrence of separator: head gets what stands
    // before it, rest what follows it, and the result is true. Without a
    // separator, head is empty, rest is the whole text and the result is false.
    // An empty separator throws LiStringEx::ExInvalidArgument.
    static bool splitString(std::string_view text, std::string_view separator, std::string& head,
                            std::string& rest);
};

} // namespace Qv
