#pragma once
// Walks a text field by field, cutting at any of a set of delimiter characters.
// KeepEmpty reports the empty fields between adjacent delimiters (so a text
// with n delimiters has n + 1 fields); NotEmpty skips them, which suits paths
// and lists written with doubled or trailing separators.
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Qv {

class LiStringTokenizer {
public:
    enum Mode { KeepEmpty, NotEmpty };

    LiStringTokenizer(std::string_view text, std::string_view delimiters, Mode mode = KeepEmpty);

    bool hasMoreTokens() const;
    // Throws LiStringEx::ExNoMoreTokens after the last token.
    std::string nextToken();
    std::vector<std::string> getRemainingTokens();

private:
    void skipEmpty();

    std::string _text;
    std::string _delimiters;
    Mode _mode;
    std::size_t _pos = 0;
    bool _done = false;
};

} // namespace Qv
