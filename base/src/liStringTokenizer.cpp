#include "liStringTokenizer.h"

#include "liStringEx.h"

#include <fmt/format.h>

namespace Qv {

LiStringTokenizer::LiStringTokenizer(std::string_view text, std::string_view delimiters, Mode mode)
    : _text(text), _delimiters(delimiters), _mode(mode) {
    skipEmpty();
}

bool LiStringTokenizer::hasMoreTokens() const {
    return !_done;
}

std::string LiStringTokenizer::nextToken() {
    if (_done)
        throw LiStringEx::ExNoMoreTokens(
            __FILE__, __LINE__, fmt::format("no token left in \"{}\" after position {}", _text, _pos));
    std::size_t const end = _text.find_first_of(_delimiters, _pos);
    std::string token;
    if (end == std::string::npos) {
        token = _text.substr(_pos);
        _done = true;
    } else {
        token = _text.substr(_pos, end - _pos);
        _pos = end + 1;
    }
    skipEmpty();
    return token;
}

std::vector<std::string> LiStringTokenizer::getRemainingTokens() {
    std::vector<std::string> tokens;
    while (hasMoreTokens())
        tokens.push_back(nextToken());
    return tokens;
}

void LiStringTokenizer::skipEmpty() {
    if (_mode != NotEmpty || _done)
        return;
    _pos = _text.find_first_not_of(_delimiters, _pos);
    if (_pos == std::string::npos) {
        _pos = _text.size();
        _done = true;
    }
}

} // namespace Qv
