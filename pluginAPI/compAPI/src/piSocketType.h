#pragma once
// What a socket carries, and whether an input takes one connection or many.
// The numbers are stored in compositions: never renumber them.
#include <optional>
#include <string>
#include <string_view>

namespace Qv {

class PiSocketType {
public:
    // COLOR is an RGB colour whose three channels are animated each on its
    // own; TIME a frame index with its rate (DtTime).
    enum Type { BOOLEAN = 0, DOUBLE = 1, INTEGER = 2, STRING = 3, IMAGE = 5, COLOR = 6, TIME = 7 };

    constexpr PiSocketType(Type type = DOUBLE) : _type(type) {}

    constexpr Type getType() const { return _type; }
    constexpr operator Type() const { return _type; }
    // Values travel through value nodes; images connect directly.
    constexpr bool isValue() const { return _type != IMAGE; }
    // A value made of channels, each with its own curve: a colour.
    constexpr bool isStructured() const { return _type == COLOR; }

    // "boolean", "double", "integer", "string", "image", "color", "time".
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
