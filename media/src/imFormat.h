#pragma once
// The pixels of a file-side image: how many components (1 to 4) and their
// depth. One component is an alpha, two are grey and alpha, three RGB and
// four RGBA, as the conversions to and from tiles read them.
#include "imPixelFormat.h"

#include <cstddef>
#include <string>

namespace Qv {

class ImFormat {
public:
    // No components: the format of a null image.
    ImFormat() = default;
    // Asserts "comps >= 1 && comps <= 4".
    ImFormat(int comps, ImPixelFormat pixelFormat);

    bool isNull() const { return _comps == 0; }
    int getComps() const { return _comps; }
    ImPixelFormat getPixelFormat() const { return _pixelFormat; }
    std::size_t getBytesPerPixel() const {
        return _pixelFormat.getBytesPerComp() * static_cast<std::size_t>(_comps);
    }

    // "4 x ECR".
    std::string dump() const;

    friend bool operator==(ImFormat const&, ImFormat const&) = default;

private:
    int _comps = 0;
    ImPixelFormat _pixelFormat;
};

} // namespace Qv
