#include "imLayout.h"

#include "assertions.h"

namespace Qv {

ImLayout::ImLayout(GeRectangle<int> const& rect, ImFormat const& format)
    : ImLayout(rect, format,
               (format.getBytesPerPixel() * static_cast<std::size_t>(std::max(rect.getWidth(), 0)) +
                ROW_ALIGN - 1) /
                   ROW_ALIGN * ROW_ALIGN) {}

ImLayout::ImLayout(GeRectangle<int> const& rect, ImFormat const& format, std::size_t rowBytes)
    : _rect(rect), _format(format), _rowBytes(rowBytes) {
    QV_ASSERT(rect.isEmpty() || rowBytes >= getPixelRowBytes());
}

std::size_t ImLayout::getSize() const {
    return _rect.isEmpty() ? 0 : _rowBytes * static_cast<std::size_t>(getHeight());
}

} // namespace Qv
