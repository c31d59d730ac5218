#include "piSocketType.h"

#include <array>
#include <utility>

namespace Qv {

namespace {

constexpr std::array<std::pair<PiSocketType::Type, std::string_view>, 7> TYPE_NAMES{{
    {PiSocketType::BOOLEAN, "boolean"},
    {PiSocketType::DOUBLE, "double"},
    {PiSocketType::INTEGER, "integer"},
    {PiSocketType::STRING, "string"},
    {PiSocketType::IMAGE, "image"},
    {PiSocketType::COLOR, "color"},
    {PiSocketType::TIME, "time"},
}};

} // namespace

std::string PiSocketType::typeToString(PiSocketType type) {
    for (auto const& [value, name] : TYPE_NAMES)
        if (value == type.getType())
            return std::string(name);
    return std::to_string(static_cast<int>(type.getType()));
}

std::optional<PiSocketType> PiSocketType::stringToType(std::string_view text) {
    for (auto const& [value, name] : TYPE_NAMES)
        if (name == text)
            return PiSocketType(value);
    return std::nullopt;
}

std::string cardinalityToString(Cardinality cardinality) {
    return cardinality == MULTIPLE ? "multiple" : "single";
}

std::optional<Cardinality> stringToCardinality(std::string_view text) {
    if (text == "single")
        return SINGLE;
    if (text == "multiple")
        return MULTIPLE;
    return std::nullopt;
}

} // namespace Qv
