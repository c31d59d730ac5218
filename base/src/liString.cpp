#include "liString.h"

#include <ostream>

namespace Qv {

namespace {
std::shared_ptr<std::string const> share(std::string text) {
    if (text.empty())
        return nullptr;
    return std::make_shared<std::string const>(std::move(text));
}
} // namespace

LiString::LiString(char const* text) : _text(share(text ? std::string(text) : std::string())) {}

LiString::LiString(std::string text) : _text(share(std::move(text))) {}

LiString::LiString(std::string_view text) : _text(share(std::string(text))) {}

std::string const& LiString::emptyString() noexcept {
    static std::string const empty;
    return empty;
}

std::ostream& operator<<(std::ostream& os, LiString const& text) {
    return os << text.toString();
}

} // namespace Qv
