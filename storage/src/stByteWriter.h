#pragma once
// Builds the bytes of a disk entry's header: little-endian whatever the
// machine, so that a cache folder can be shared between machines.
#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace Qv {

class StByteWriter {
public:
    void putU8(std::uint8_t value) { _bytes.push_back(char(value)); }
    void putU32(std::uint32_t value) {
        for (int i = 0; i < 4; ++i)
            putU8(std::uint8_t(value >> (8 * i)));
    }
    void putU64(std::uint64_t value) {
        for (int i = 0; i < 8; ++i)
            putU8(std::uint8_t(value >> (8 * i)));
    }
    void putI32(std::int32_t value) { putU32(std::uint32_t(value)); }
    void putF32(float value) { putU32(std::bit_cast<std::uint32_t>(value)); }
    void putF64(double value) { putU64(std::bit_cast<std::uint64_t>(value)); }
    void putBytes(void const* data, std::size_t size) { _bytes.append(static_cast<char const*>(data), size); }
    // A length, then the bytes.
    void putText(std::string_view text) {
        putU32(std::uint32_t(text.size()));
        putBytes(text.data(), text.size());
    }

    std::string const& getBytes() const { return _bytes; }
    std::size_t getSize() const { return _bytes.size(); }

private:
    std::string _bytes;
};

} // namespace Qv
