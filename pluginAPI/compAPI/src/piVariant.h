#pragma once
// One value of any type a socket or a stored value may hold, and its text
// form in compositions and on the command line: numbers in the classic
// locale, doubles in the shortest form that reads back to the same value.
// A colour is its three channels, "0.25 0.5 1.5"; a time is "<frame>@<rate>",
// "12@24" or "1001@30000/1001", and a bare frame number leaves the rate
// unspecified (0), for the input's node to give it.
#include "dtTime.h"
#include "piSocketType.h"
#include "piValueType.h"

#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace Qv {

using PiVariant =
    std::variant<std::monostate, bool, int, long long, double, std::string, std::vector<double>, DtTime>;

namespace PiVariantUtil {

std::string toString(PiVariant const& value);

// Throws PiEx::ExBadValue quoting the text and naming the type.
PiVariant fromString(PiSocketType type, std::string_view text);
PiVariant fromString(PiValueType type, std::string_view text);

// The value of the type's zero: false, 0, 0.0, "", no element, a black
// colour, frame 0 at no rate.
PiVariant getZero(PiSocketType type);
PiVariant getZero(PiValueType type);

bool holdsType(PiVariant const& value, PiSocketType type);
bool holdsType(PiVariant const& value, PiValueType type);

} // namespace PiVariantUtil

} // namespace Qv
