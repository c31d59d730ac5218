#pragma once
// What a socket carries, and whether an input takes one connection or many.
// The numbers are stored in compositions: never renumber them.
#include <optional>
#include <string>
#include <string_view>

namespace Qv {

class PiSocketType {
public:
    enum Type { BOOLEAN = 0, DOUBLE = 1, INTEGER = 2, STRING = 3, IMAGE = 5 };

    constexpr PiSocketType(Type type = DOUBLE) : _type(type) {}

    constexpr Type getType() const { return _type; }
    constexpr operator Type() const { return _type; }
    // Values travel through value nodes; images connect directly.
    constexpr bool isValue() const { return _type != IMAGE; }

    // "boolean", "double", "integer", "string", "image".
    static std::string typeToString(PiSocketType type);
    // The reverse of typeToString; nothing for an unknown text.
    static std::optional<PiSocketType> stringToType(std::string_view text);

private:
    Type _type;
};

enum Cardinality { SINGLE = 0, MULTIPLE = 1 };

// "single", "multiple".
std::string cardinalityToString(Cardinality cardinality);
std::optional<Cardinality> stringToCardinality(std::string_view text);

} // namespace Qv
