#include "uuid.h"

#include <algorithm>
#include <cstring>
#include <fmt/format.h>
#include <ostream>
#include <random>

namespace Qv {

namespace {
// Each thread seeds its own generator once, so creation needs no lock.
std::mt19937_64& generator() {
    thread_local std::mt19937_64 engine = [] {
        std::random_device device;
        std::seed_seq seed{device(), device(), device(), device(), device(), device(), device(), device()};
        return std::mt19937_64(seed);
    }();
    return engine;
}

int hexValue(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

bool isDashPosition(std::size_t i) {
    return i == 8 || i == 13 || i == 18 || i == 23;
}
} // namespace

Uuid Uuid::createRandom() {
    std::uint64_t const high = generator()();
    std::uint64_t const low = generator()();
    Bytes bytes;
    for (int i = 0; i < 8; ++i) {
        bytes[i] = static_cast<std::uint8_t>(high >> (56 - 8 * i));
        bytes[8 + i] = static_cast<std::uint8_t>(low >> (56 - 8 * i));
    }
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0f) | 0x40); // version 4
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3f) | 0x80); // RFC 4122 variant
    return Uuid(bytes);
}

Uuid Uuid::fromString(std::string_view text) {
    auto bad = [&](std::string_view why) {
        return UuidEx::ExBadText(
            __FILE__, __LINE__,
            fmt::format("bad identifier \"{}\": {} (expected xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx)", text,
                        why));
    };
    if (text.size() != 36)
        throw bad("wrong length");
    Bytes bytes{};
    std::size_t nibble = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (isDashPosition(i)) {
            if (text[i] != '-')
                throw bad(fmt::format("'-' expected at position {}", i + 1));
            continue;
        }
        int const value = hexValue(text[i]);
        if (value < 0)
            throw bad(fmt::format("hexadecimal digit expected at position {}", i + 1));
        bytes[nibble / 2] = static_cast<std::uint8_t>(bytes[nibble / 2] | (nibble % 2 ? value : value << 4));
        ++nibble;
    }
    return Uuid(bytes);
}

std::string Uuid::toString() const {
    static constexpr char digits[] = "0123456789abcdef";
    std::string text;
    text.reserve(36);
    for (std::size_t i = 0; i < _bytes.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10)
            text.push_back('-');
        text.push_back(digits[_bytes[i] >> 4]);
        text.push_back(digits[_bytes[i] & 0x0f]);
    }
    return text;
}

bool Uuid::isNil() const {
    return std::all_of(_bytes.begin(), _bytes.end(), [](std::uint8_t b) { return b == 0; });
}

std::ostream& operator<<(std::ostream& os, Uuid const& uuid) {
    return os << uuid.toString();
}

std::size_t UuidUtil::hashFunc(Uuid const& uuid) {
    // Random identifiers are already well mixed: folding the two halves suffices.
    std::uint64_t high = 0;
    std::uint64_t low = 0;
    std::memcpy(&high, uuid.getBytes().data(), 8);
    std::memcpy(&low, uuid.getBytes().data() + 8, 8);
    return static_cast<std::size_t>(high ^ (low * 0x9e3779b97f4a7c15ULL));
}

} // namespace Qv
