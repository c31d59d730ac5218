#include "osWildcardFilter.h"

namespace Qv {

namespace {
// Index just past the UTF-8 character that starts at pos.
std::size_t nextCharacter(std::string_view text, std::size_t pos) {
    ++pos;
    while (pos < text.size() && (static_cast<unsigned char>(text[pos]) & 0xC0) == 0x80)
        ++pos;
    return pos;
}
} // namespace

bool OsWildcardFilter::matches(std::string_view name) const {
    // Greedy scan that remembers the last '*': on a mismatch the star takes
    // one more character and the rest of the pattern is tried again. Linear
    // per star, no recursion.
    constexpr std::size_t none = std::string_view::npos;
    std::string_view pattern(_pattern);
    std::size_t p = 0, n = 0;
    std::size_t starP = none, starN = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            starP = p++;
            starN = n;
        } else if (p < pattern.size() && pattern[p] == '?') {
            ++p;
            n = nextCharacter(name, n);
        } else if (p < pattern.size() && pattern[p] == name[n]) {
            ++p;
            ++n;
        } else if (starP != none) {
            p = starP + 1;
            starN = nextCharacter(name, starN);
            n = starN;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*')
        ++p;
    return p == pattern.size();
}

} // namespace Qv
