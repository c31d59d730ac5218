#include "piVariant.h"

#include "liStringUtil.h"
#include "piEx.h"

#include <cmath>
#include <fmt/format.h>
#include <fmt/ranges.h>

namespace Qv::PiVariantUtil {

namespace {

[[noreturn]] void throwBadValue(std::string_view text, std::string_view typeName) {
    throw PiEx::ExBadValue(__FILE__, __LINE__, fmt::format("'{}' is not a value of type {}", text, typeName));
}

// Blanks around a number are layout; the number itself must be all the text.
template <class T>
T parseOrThrow(std::string_view text, std::string_view typeName) {
    std::string const number = LiStringUtil::trimLeadingAndTrailingSpaces(text);
    std::optional<T> value;
    if constexpr (std::is_same_v<T, int>)
        value = LiStringUtil::tryConvertToInt(number);
    else if constexpr (std::is_same_v<T, long long>)
        value = LiStringUtil::tryConvertToLongLong(number);
    else
        value = LiStringUtil::tryConvertToDouble(number);
    if (!value)
        throwBadValue(text, typeName);
    if constexpr (std::is_floating_point_v<T>) {
        if (!std::isfinite(*value))
            throwBadValue(text, typeName);
    }
    return *value;
}

bool parseBool(std::string_view text, std::string_view typeName) {
    std::string const value = LiStringUtil::trimLeadingAndTrailingSpaces(text);
    if (value == "true" || value == "1")
        return true;
    if (value == "false" || value == "0")
        return false;
    throwBadValue(text, typeName);
}

std::vector<double> parseDoubles(std::string_view text) {
    std::vector<double> values;
    for (std::string const& item : LiStringUtil::split(text, " \t\r\n"))
        if (!item.empty())
            values.push_back(parseOrThrow<double>(item, "doubles"));
    return values;
}

std::vector<double> parseColor(std::string_view text, std::string_view typeName) {
    std::vector<double> channels;
    for (std::string const& item : LiStringUtil::split(text, " \t\r\n"))
        if (!item.empty())
            channels.push_back(parseOrThrow<double>(item, typeName));
    if (channels.size() != 3)
        throw PiEx::ExBadValue(__FILE__, __LINE__,
                               fmt::format("'{}' is not a value of type {}: it takes three numbers, red, "
                                           "green and blue",
                                           text, typeName));
    return channels;
}

DtTime parseTime(std::string_view text, std::string_view typeName) {
    std::size_t at = text.find('@');
    long long frame = parseOrThrow<long long>(text.substr(0, at), typeName);
    if (at == std::string_view::npos)
        return DtTime(DtTimeIndex(frame), Rational());
    try {
        Rational rate = RationalUtil::fromFractionString(text.substr(at + 1), "/");
        if (rate.getDouble() <= 0.0)
            throwBadValue(text, typeName);
        return DtTime(DtTimeIndex(frame), rate);
    } catch (RationalEx::ExBadFraction const&) {
    } catch (RationalEx::ExDivisionByZero const&) {
    }
    throwBadValue(text, typeName);
}

std::string rateToString(Rational rate) {
    if (rate.getDenominator() == 1)
        return std::to_string(rate.getNumerator());
    return fmt::format("{}/{}", rate.getNumerator(), rate.getDenominator());
}

} // namespace

std::string toString(PiVariant const& value) {
    return std::visit(
        [](auto const& v) -> std::string {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, std::monostate>)
                return "";
            else if constexpr (std::is_same_v<T, bool>)
                return v ? "true" : "false";
            else if constexpr (std::is_same_v<T, std::string>)
                return v;
            else if constexpr (std::is_same_v<T, std::vector<double>>)
                return fmt::format("{}", fmt::join(v, " "));
            else if constexpr (std::is_same_v<T, DtTime>)
                return v.getRate().isZero()
                           ? std::to_string(v.getIndex().getValue())
                           : fmt::format("{}@{}", v.getIndex().getValue(), rateToString(v.getRate()));
            else
                return fmt::format("{}", v);
        },
        value);
}

PiVariant fromString(PiSocketType type, std::string_view text) {
    std::string name = PiSocketType::typeToString(type);
    switch (type.getType()) {
    case PiSocketType::BOOLEAN:
        return parseBool(text, name);
    case PiSocketType::DOUBLE:
        return parseOrThrow<double>(text, name);
    case PiSocketType::INTEGER:
        return parseOrThrow<int>(text, name);
    case PiSocketType::STRING:
        return std::string(text);
    case PiSocketType::COLOR:
        return parseColor(text, name);
    case PiSocketType::TIME:
        return parseTime(text, name);
    case PiSocketType::IMAGE:
        break;
    }
    throwBadValue(text, name);
}

PiVariant fromString(PiValueType type, std::string_view text) {
    std::string name = valueTypeToString(type);
    switch (type) {
    case PiValueType::BOOL:
        return parseBool(text, name);
    case PiValueType::INT:
        return parseOrThrow<int>(text, name);
    case PiValueType::LONG_LONG:
        return parseOrThrow<long long>(text, name);
    case PiValueType::DOUBLE:
        return parseOrThrow<double>(text, name);
    case PiValueType::STRING:
        return std::string(text);
    case PiValueType::DOUBLE_ARRAY:
        return parseDoubles(text);
    }
    throwBadValue(text, name);
}

PiVariant getZero(PiSocketType type) {
    switch (type.getType()) {
    case PiSocketType::BOOLEAN:
        return false;
    case PiSocketType::DOUBLE:
        return 0.0;
    case PiSocketType::INTEGER:
        return 0;
    case PiSocketType::STRING:
        return std::string();
    case PiSocketType::COLOR:
        return std::vector<double>(3, 0.0);
    case PiSocketType::TIME:
        return DtTime();
    case PiSocketType::IMAGE:
        break;
    }
    return {};
}

PiVariant getZero(PiValueType type) {
    switch (type) {
    case PiValueType::BOOL:
        return false;
    case PiValueType::INT:
        return 0;
    case PiValueType::LONG_LONG:
        return 0LL;
    case PiValueType::DOUBLE:
        return 0.0;
    case PiValueType::STRING:
        return std::string();
    case PiValueType::DOUBLE_ARRAY:
        return std::vector<double>();
    }
    return {};
}

bool holdsType(PiVariant const& value, PiSocketType type) {
    if (type == PiSocketType::COLOR) {
        auto const* channels = std::get_if<std::vector<double>>(&value);
        return channels && channels->size() == 3;
    }
    return value.index() == getZero(type).index() && !std::holds_alternative<std::monostate>(value);
}

bool holdsType(PiVariant const& value, PiValueType type) {
    return value.index() == getZero(type).index();
}

} // namespace Qv::PiVariantUtil
