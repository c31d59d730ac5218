#pragma once
// Matches file names against a pattern in which '*' stands for any run of
// characters (also none) and '?' for exactly one character. Matching is case
// sensitive, as the file systems we run on are: "A.DPX" is another file than
// "a.dpx". Names are UTF-8, and '?' takes one whole character.
#include <string>
#include <string_view>

namespace Qv {

class OsWildcardFilter {
public:
    explicit OsWildcardFilter(std::string pattern) : _pattern(std::move(pattern)) {}

    std::string const& getPattern() const { return _pattern; }
    bool matches(std::string_view name) const;

private:
    std::string _pattern;
};

} // namespace Qv
