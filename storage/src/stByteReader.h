#pragma once
// Reads what StByteWriter wrote. Reading past the end sets a flag instead of
// throwing, so that a damaged header is one check at the end.
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace Qv {

class StByteReader {
public:
    StByteReader(void const* data, std::size_t size)
        : _data(static_cast<unsigned char const*>(data)), _size(size) {}

    std::uint8_t getU8() { return has(1) ? _data[_pos++] : 0; }
    std::uint32_t getU32() {
        if (!has(4))
            return 0;
        std::uint32_t value = 0;
        for (int i = 0; i < 4; ++i)
            value |= std::uint32_t(_data[_pos++]) << (8 * i);
        return value;
    }
    std::uint64_t getU64() {
        if (!has(8))
            return 0;
        std::uint64_t value = 0;
        for (int i = 0; i < 8; ++i)
            value |= std::uint64_t(_data[_pos++]) << (8 * i);
        return value;
    }
    std::int32_t getI32() { return std::int32_t(getU32()); }
    float getF32() { return std::bit_cast<float>(getU32()); }
    double getF64() { return std::bit_cast<double>(getU64()); }
    bool getBytes(void* out, std::size_t size) {
        if (!has(size))
            return false;
        std::memcpy(out, _data + _pos, size);
        _pos += size;
        return true;
    }
    std::string getText() {
        std::uint32_t const size = getU32();
        if (!has(size))
            return {};
        std::string text(reinterpret_cast<char const*>(_data + _pos), size);
        _pos += size;
        return text;
    }

    // False once anything was read past the end.
    bool isGood() const { return _good; }
    std::size_t getPosition() const { return _pos; }

private:
    bool has(std::size_t size) {
        if (!_good || size > _size - _pos) {
            _good = false;
            return false;
        }
        return true;
    }

    unsigned char const* _data;
    std::size_t _size;
    std::size_t _pos = 0;
    bool _good = true;
};

} // namespace Qv
