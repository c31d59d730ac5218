#pragma once
// What a pixel is: how many components, how many bits each, and the pixel's
// aspect (width over height). Every valid format passes three checks at
// construction; INVALID_FORMAT is the one value that skips them.
#include "rational.h"

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>

namespace Qv {

class IxPixelFormat {
public:
    enum Comps : std::int32_t { ALPHA = 1, RGB = 3, RGBA = 4 };
    // Bits per component. COMPLEX holds a pair of 32-bit floats per component:
    // a valid format that the pixel primitives refuse.
    enum Depth : std::int32_t { UINT8 = 8, FLOAT16 = 16, FLOAT32 = 32, COMPLEX = 64 };

    static IxPixelFormat const INVALID_FORMAT;

    // The invalid format.
    IxPixelFormat() = default;
    // Asserts the comps, then the depth, then that the aspect ratio is above zero.
    IxPixelFormat(Comps comps, Depth depth, Rational const& aspectRatio = Rational(1, 1));

    bool isValid() const { return _comps != 0; }
    Comps getComps() const { return static_cast<Comps>(_comps); }
    Depth getDepth() const { return static_cast<Depth>(_depth); }
    Rational const& getAspectRatio() const { return _aspectRatio; }

    std::size_t getBytesPerComp() const { return static_cast<std::size_t>(_depth) / 8; }
    std::size_t getBytesPerPixel() const { return getBytesPerComp() * static_cast<std::size_t>(_comps); }
    bool hasAlpha() const { return _comps == ALPHA || _comps == RGBA; }

    // The same pixels with another aspect.
    IxPixelFormat withAspectRatio(Rational const& aspectRatio) const;

    // "RGBA FLOAT16 1/1", "INVALID_FORMAT".
    std::string dump() const;

    // By components, depth and aspect value: 2/4 equals 1/2.
    friend bool operator==(IxPixelFormat const&, IxPixelFormat const&) = default;

private:
    std::int32_t _comps = 0;
    std::int32_t _depth = 0;
    Rational _aspectRatio{};
};

std::ostream& operator<<(std::ostream& os, IxPixelFormat const& format);
char const* toString(IxPixelFormat::Comps comps);
char const* toString(IxPixelFormat::Depth depth);

} // namespace Qv
