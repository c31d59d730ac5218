#pragma once
// Where the pixels of a file-side image lie: its pixel rectangle (x2 and y2
// exclusive, as for tiles), its format and the bytes from one row to the
// next. Rows follow one another from y1 down, pixels interleaved.
#include "geRectangle.h"
#include "imFormat.h"

#include <cstddef>

namespace Qv {

class ImLayout {
public:
    static constexpr std::size_t ROW_ALIGN = 64;

    ImLayout() = default;
    // Rows rounded up to ROW_ALIGN bytes.
    ImLayout(GeRectangle<int> const& rect, ImFormat const& format);
    // Rows of the given length, at least one row of pixels (assertion).
    ImLayout(GeRectangle<int> const& rect, ImFormat const& format, std::size_t rowBytes);

    GeRectangle<int> const& getRect() const { return _rect; }
    int getWidth() const { return _rect.getWidth(); }
    int getHeight() const { return _rect.getHeight(); }
    ImFormat const& getFormat() const { return _format; }
    std::size_t getRowBytes() const { return _rowBytes; }
    // Bytes of all rows; 0 for an empty rectangle.
    std::size_t getSize() const;
    // Bytes of the pixels of one row, without the padding.
    std::size_t getPixelRowBytes() const {
        return _format.getBytesPerPixel() * static_cast<std::size_t>(getWidth());
    }

    friend bool operator==(ImLayout const&, ImLayout const&) = default;

private:
    GeRectangle<int> _rect;
    ImFormat _format;
    std::size_t _rowBytes = 0;
};

} // namespace Qv
