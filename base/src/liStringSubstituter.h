#pragma once
// Replaces tokens in a text by what their handlers produce, for instance
// "<CompName>" in an output file name pattern. Handlers run once per
// occurrence, so a token whose value depends on the place can be served.
#include "cbHandler.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace Qv {

class LiStringSubstituter {
public:
    // Receives the token found and overwrites it with its replacement.
    using Handler = std::function<void(std::string&)>;

    // Tokens are matched in the order of the text; where two tokens start at the
    // same place the longer wins. An empty token, a token given twice or an empty
    // handler throws LiStringEx::ExInvalidArgument.
    void addPattern(std::string token, Handler handler);
    // The handler is borrowed: a CbContainer beside the substituter keeps it
    // alive while substitute runs.
    void addPattern(std::string token, CbHandler<std::string>* handler);

    // Replacements are not searched again, so a handler may return text that
    // holds a token.
    std::string substitute(std::string_view text) const;

private:
    struct Pattern {
        std::string token;
        Handler handler;
    };
    std::vector<Pattern> _patterns;
};

} // namespace Qv
