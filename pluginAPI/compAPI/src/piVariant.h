#pragma once
// One value of any type a socket or a stored value may hold, and its text
// form in compositions and on the command line: numbers in the classic
// locale, doubles in the shortest form that reads back to the same value.
#include "piSocketType.h"
#include "piValueType.h"

#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace Qv {

using PiVariant =
    std::variant<std::monostate, bool, int, long long, double, std::string, std::vector<double>>;

namespace PiVariantUtil {

std::string toString(PiVariant const& value);

// Throws PiEx::ExBadValue quoting the text and naming the type.
PiVariant fromString(PiSocketType type, std::string_view text);
PiVariant fromString(PiValueType type, std::string_view text);

// The value of the type's zero: false, 0, 0.0, "", no element.
PiVariant getZero(PiSocketType type);
PiVariant getZero(PiValueType type);

bool holdsType(PiVariant const& value, PiSocketType type);
bool holdsType(PiVariant const& value, PiValueType type);

} // namespace PiVariantUtil

} // namespace Qv
