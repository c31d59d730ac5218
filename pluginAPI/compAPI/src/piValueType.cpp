#include "piValueType.h"

#include <array>
#include <utility>

namespace Qv {

namespace {

constexpr std::array<std::pair<PiValueType, std::string_view>, 6> TYPE_NAMES{{
    {PiValueType::BOOL, "bool"},
    {PiValueType::INT, "int"},
    {PiValueType::LONG_LONG, "longlong"},
    {PiValueType::DOUBLE, "double"},
    {PiValueType::STRING, "string"},
    {PiValueType::DOUBLE_ARRAY, "doubles"},
}};

} // namespace

std::string valueTypeToString(PiValueType type) {
    for (auto const& [value, name] : TYPE_NAMES)
        if (value == type)
            return std::string(name);
    return std::to_string(static_cast<int>(type));
}

std::optional<PiValueType> stringToValueType(std::string_view text) {
    for (auto const& [value, name] : TYPE_NAMES)
        if (name == text)
            return value;
    return std::nullopt;
}

} // namespace Qv
