#pragma once
// A 128-bit identifier, written in the canonical lower-case form
// "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx". The default value is the nil
// identifier, all zero.
#include "exBase.h"

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

namespace Qv {

struct UuidEx {
    // A text that is not an identifier; the reason quotes it.
    QV_DECLARE_EX(ExBadText, ExBase);
};

class Uuid {
public:
    using Bytes = std::array<std::uint8_t, 16>;

    Uuid() = default;
    explicit Uuid(Bytes const& bytes) : _bytes(bytes) {}

    // A random (version 4) identifier.
    static Uuid createRandom();
    // Reads the canonical form, in either case. Throws UuidEx::ExBadText.
    static Uuid fromString(std::string_view text);

    std::string toString() const;
    bool isNil() const;
    Bytes const& getBytes() const { return _bytes; }

    friend auto operator<=>(Uuid const&, Uuid const&) = default;

private:
    Bytes _bytes{};
};

std::ostream& operator<<(std::ostream& os, Uuid const& uuid);

struct UuidUtil {
    static bool isNil(Uuid const& uuid) { return uuid.isNil(); }
    static std::size_t hashFunc(Uuid const& uuid);
};

} // namespace Qv

template <>
struct std::hash<Qv::Uuid> {
    std::size_t operator()(Qv::Uuid const& uuid) const noexcept { return Qv::UuidUtil::hashFunc(uuid); }
};
