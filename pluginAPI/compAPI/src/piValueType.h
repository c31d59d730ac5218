#pragma once
// The type of a node's stored value. The numbers are stored in compositions:
// never renumber them.
#include <optional>
#include <string>
#include <string_view>

namespace Qv {

enum class PiValueType { BOOL = 0, INT = 1, LONG_LONG = 2, DOUBLE = 3, STRING = 4, DOUBLE_ARRAY = 5 };

// "bool", "int", "longlong", "double", "string", "doubles".
std::string valueTypeToString(PiValueType type);
std::optional<PiValueType> stringToValueType(std::string_view text);

} // namespace Qv
