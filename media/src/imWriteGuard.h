#pragma once
// Write access to the rows of a file-side image; y in the image's rectangle.
#include "assertions.h"
#include "imImage.h"

#include <cstddef>

namespace Qv {

class ImWriteGuard {
public:
    ImWriteGuard() = default;
    // Asserts that the image is not null.
    explicit ImWriteGuard(ImImage const& image) : _image(image) { QV_ASSERT(!image.isNull()); }

    ImImage const& getImage() const { return _image; }
    ImLayout const& getLayout() const { return _image.getLayout(); }
    GeRectangle<int> const& getRect() const { return _image.getRect(); }
    ImFormat const& getFormat() const { return _image.getFormat(); }

    std::byte* getLine(int y) const {
        return _image.getOrigin() + static_cast<std::size_t>(y - getRect().y1) * getLayout().getRowBytes();
    }
    template <class T>
    T* getLineAs(int y) const {
        return reinterpret_cast<T*>(getLine(y));
    }

private:
    ImImage _image;
};

} // namespace Qv
