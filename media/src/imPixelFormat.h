#pragma once
// The depth of the components of a file-side image. Files store integers of
// 8 or 16 bits or floats; in memory the import works in two float depths:
// ECR, the extended colour range of 16-bit halves, and HDR, 32-bit floats.
// Integers map [0, max] onto [0, 1].
#include <cstddef>
#include <cstdint>
#include <string>

namespace Qv {

class ImPixelFormat {
public:
    enum Depth : std::int32_t { UINT8 = 1, UINT16 = 2, ECR = 3, HDR = 4 };

    ImPixelFormat(Depth depth = UINT8) : _depth(depth) {}

    Depth getDepth() const { return _depth; }
    // 8, 16, 16, 32.
    int getBitsPerComp() const;
    std::size_t getBytesPerComp() const { return static_cast<std::size_t>(getBitsPerComp()) / 8; }
    bool isFloat() const { return _depth == ECR || _depth == HDR; }

    // The depth asked of a file for a given number of bits: 8 gives UINT8,
    // 16 UINT16, 32 HDR; anything else is refused with an assertion.
    static ImPixelFormat fromBits(int bits);

    // "UINT8", "UINT16", "ECR", "HDR".
    std::string dump() const;

    friend bool operator==(ImPixelFormat, ImPixelFormat) = default;
    // So that `depth == ImPixelFormat::ECR` reads as it does for an enum.
    friend bool operator==(ImPixelFormat format, Depth depth) { return format._depth == depth; }

private:
    Depth _depth;
};

} // namespace Qv
