#pragma once
// Text helpers shared by the tools. Everything here is locale independent:
// numbers are written and read as in the classic "C" locale, and case and
// space tests look at ASCII only, so stored values read back the same on
// every machine.
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Qv {

struct LiStringUtil {
    static std::string toLowerCase(std::string_view text);
    static std::string toUpperCase(std::string_view text);
    // Spaces are ' ', '\t', '\n', '\v', '\f' and '\r'.
    static std::string trimLeadingAndTrailingSpaces(std::string_view text);

    static bool startsWith(std::string_view text, std::string_view prefix) {
        return text.starts_with(prefix);
    }
    static bool endsWith(std::string_view text, std::string_view suffix) { return text.ends_with(suffix); }

    // Replaces every occurrence of token, scanning left to right; a replacement
    // is never searched again. An empty token throws LiStringEx::ExInvalidArgument.
    static std::string substitute(std::string_view text, std::string_view token,
                                  std::string_view replacement);

    // Splits at every delimiter character and keeps empty fields: "a,,b" gives
    // "a", "", "b", and "" gives one empty field.
    static std::vector<std::string> split(std::string_view text, std::string_view delimiters);

    // Decimal text of a number.
    static std::string convertNb(int value);
    static std::string convertNb(long long value);
    // Shortest text that reads back as the same double.
    static std::string convertNb(double value);

    // The whole text must be one decimal integer ("-12", "007"), with no spaces;
    // anything else, or a value out of range, throws LiStringEx::ExBadNumber.
    static int convertToInt(std::string_view text);
    static std::optional<int> tryConvertToInt(std::string_view text);
    static std::optional<long long> tryConvertToLongLong(std::string_view text);
    // The whole text must be one decimal floating-point number.
    static double convertToDouble(std::string_view text);
    static std::optional<double> tryConvertToDouble(std::string_view text);

    // The character that stands in for those not allowed in a component name.
    static char getReplacementChar() { return '_'; }
    // Makes a name usable as a project component, which is stored as a file or
    // directory: control characters and \ / : * ? " < > | become replacement,
    // surrounding spaces and trailing dots are dropped. May return an empty text.
    static std::string sanitizeComponentName(std::string_view name, char replacement);
};

} // namespace Qv
