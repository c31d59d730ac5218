#pragma once
// Immutable text for names: sockets, values and tools hold many copies of the
// same few names, so a copy shares the characters instead of duplicating them.
// Comparison and hashing are those of std::string.
#include <compare>
#include <cstddef>
#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>

namespace Qv {

class LiString {
public:
    // The empty text allocates nothing, so file-scope constants are cheap and safe
    // at static construction.
    LiString() noexcept = default;
    LiString(char const* text);
    LiString(std::string text);
    LiString(std::string_view text);

    std::string const& toString() const noexcept { return _text ? *_text : emptyString(); }
    char const* c_str() const noexcept { return toString().c_str(); }
    std::size_t size() const noexcept { return _text ? _text->size() : 0; }
    bool empty() const noexcept { return size() == 0; }

    operator std::string const&() const noexcept { return toString(); }
    operator std::string_view() const noexcept { return toString(); }

    friend bool operator==(LiString const& a, LiString const& b) noexcept {
        return a._text == b._text || a.toString() == b.toString();
    }
    friend bool operator==(LiString const& a, std::string const& b) noexcept { return a.toString() == b; }
    friend bool operator==(LiString const& a, std::string_view b) noexcept { return a.toString() == b; }
    friend bool operator==(LiString const& a, char const* b) noexcept {
        return a.toString() == std::string_view(b ? b : "");
    }
    friend std::strong_ordering operator<=>(LiString const& a, LiString const& b) noexcept {
        return a.toString() <=> b.toString();
    }
    friend std::strong_ordering operator<=>(LiString const& a, std::string const& b) noexcept {
        return a.toString() <=> b;
    }
    friend std::strong_ordering operator<=>(LiString const& a, std::string_view b) noexcept {
        return std::string_view(a.toString()) <=> b;
    }
    friend std::strong_ordering operator<=>(LiString const& a, char const* b) noexcept {
        return std::string_view(a.toString()) <=> std::string_view(b ? b : "");
    }

private:
    static std::string const& emptyString() noexcept;

    std::shared_ptr<std::string const> _text;
};

std::ostream& operator<<(std::ostream& os, LiString const& text);

} // namespace Qv

template <>
struct std::hash<Qv::LiString> {
    std::size_t operator()(Qv::LiString const& text) const noexcept {
        return std::hash<std::string_view>{}(text.toString());
    }
};
