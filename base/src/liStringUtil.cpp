#include "liStringUtil.h"

#include "liStringEx.h"
#include "liStringTokenizer.h"

#include <charconv>
#include <fmt/format.h>
#include <system_error>

namespace Qv {

namespace {
bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

template <class T>
std::optional<T> parseWhole(std::string_view text) {
    T value{};
    auto const* end = text.data() + text.size();
    auto [ptr, ec] = std::from_chars(text.data(), end, value);
    if (text.empty() || ec != std::errc() || ptr != end)
        return std::nullopt;
    return value;
}
} // namespace

std::string LiStringUtil::toLowerCase(std::string_view text) {
    std::string result(text);
    for (char& c : result)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return result;
}

std::string LiStringUtil::toUpperCase(std::string_view text) {
    std::string result(text);
    for (char& c : result)
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    return result;
}

std::string LiStringUtil::trimLeadingAndTrailingSpaces(std::string_view text) {
    std::size_t first = 0;
    std::size_t last = text.size();
    while (first < last && isSpace(text[first]))
        ++first;
    while (last > first && isSpace(text[last - 1]))
        --last;
    return std::string(text.substr(first, last - first));
}

std::string LiStringUtil::substitute(std::string_view text, std::string_view token,
                                     std::string_view replacement) {
    if (token.empty())
        throw LiStringEx::ExInvalidArgument(__FILE__, __LINE__,
                                            fmt::format("cannot substitute an empty token in \"{}\"", text));
    std::string result;
    result.reserve(text.size());
    std::size_t pos = 0;
    for (std::size_t hit = text.find(token); hit != std::string_view::npos; hit = text.find(token, pos)) {
        result.append(text.substr(pos, hit - pos));
        result.append(replacement);
        pos = hit + token.size();
    }
    result.append(text.substr(pos));
    return result;
}

std::vector<std::string> LiStringUtil::split(std::string_view text, std::string_view delimiters) {
    return LiStringTokenizer(text, delimiters, LiStringTokenizer::KeepEmpty).getRemainingTokens();
}

std::string LiStringUtil::convertNb(int value) {
    return fmt::format("{}", value);
}

std::string LiStringUtil::convertNb(long long value) {
    return fmt::format("{}", value);
}

std::string LiStringUtil::convertNb(double value) {
    return fmt::format("{}", value);
}

int LiStringUtil::convertToInt(std::string_view text) {
    if (auto value = parseWhole<int>(text))
        return *value;
    throw LiStringEx::ExBadNumber(__FILE__, __LINE__, fmt::format("\"{}\" is not an integer", text));
}

std::optional<int> LiStringUtil::tryConvertToInt(std::string_view text) {
    return parseWhole<int>(text);
}

std::optional<long long> LiStringUtil::tryConvertToLongLong(std::string_view text) {
    return parseWhole<long long>(text);
}

std::optional<double> LiStringUtil::tryConvertToDouble(std::string_view text) {
    return parseWhole<double>(text);
}

double LiStringUtil::convertToDouble(std::string_view text) {
    if (auto value = parseWhole<double>(text))
        return *value;
    throw LiStringEx::ExBadNumber(__FILE__, __LINE__, fmt::format("\"{}\" is not a number", text));
}

std::string LiStringUtil::sanitizeComponentName(std::string_view name, char replacement) {
    static constexpr std::string_view forbidden = "\\/:*?\"<>|";
    std::string result = trimLeadingAndTrailingSpaces(name);
    for (char& c : result) {
        auto const u = static_cast<unsigned char>(c);
        if (u < 0x20 || u == 0x7f || forbidden.find(c) != std::string_view::npos)
            c = replacement;
    }
    // Trailing dots vanish from file names on some systems; dropping them keeps
    // two names from meaning the same file.
    while (!result.empty() && result.back() == '.')
        result.pop_back();
    return trimLeadingAndTrailingSpaces(result);
}

} // namespace Qv
