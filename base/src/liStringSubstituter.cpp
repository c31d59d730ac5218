#include "liStringSubstituter.h"

#include "liStringEx.h"

#include <fmt/format.h>

namespace Qv {

void LiStringSubstituter::addPattern(std::string token, Handler handler) {
    if (token.empty())
        throw LiStringEx::ExInvalidArgument(__FILE__, __LINE__, "a substitution pattern cannot be empty");
    if (!handler)
        throw LiStringEx::ExInvalidArgument(__FILE__, __LINE__,
                                            fmt::format("the pattern \"{}\" has no handler", token));
    for (Pattern const& pattern : _patterns)
        if (pattern.token == token)
            throw LiStringEx::ExInvalidArgument(__FILE__, __LINE__,
                                                fmt::format("the pattern \"{}\" is given twice", token));
    _patterns.push_back({std::move(token), std::move(handler)});
}

void LiStringSubstituter::addPattern(std::string token, CbHandler<std::string>* handler) {
    if (!handler)
        throw LiStringEx::ExInvalidArgument(__FILE__, __LINE__,
                                            fmt::format("the pattern \"{}\" has no handler", token));
    addPattern(std::move(token), [handler](std::string& text) { handler->call(text); });
}

std::string LiStringSubstituter::substitute(std::string_view text) const {
    std::string result;
    result.reserve(text.size());
    std::size_t pos = 0;
    while (pos < text.size()) {
        Pattern const* best = nullptr;
        std::string_view const tail = text.substr(pos);
        for (Pattern const& pattern : _patterns)
            if (tail.starts_with(pattern.token) && (!best || pattern.token.size() > best->token.size()))
                best = &pattern;
        if (!best) {
            result.push_back(text[pos++]);
            continue;
        }
        std::string value = best->token;
        best->handler(value);
        result.append(value);
        pos += best->token.size();
    }
    return result;
}

} // namespace Qv
