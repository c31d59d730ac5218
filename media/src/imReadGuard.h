#pragma once
// Read access to the rows of a file-side image; y in the image's rectangle.
#include "assertions.h"
#include "imImageConst.h"

#include <cstddef>

namespace Qv {

class ImReadGuard {
public:
    ImReadGuard() = default;
    // Asserts that the image is not null.
    explicit ImReadGuard(ImImageConst const& image) : _image(image) { QV_ASSERT(!image.isNull()); }

    ImImageConst const& getImage() const { return _image; }
    ImLayout const& getLayout() const { return _image.getLayout(); }
    GeRectangle<int> const& getRect() const { return _image.getRect(); }
    ImFormat const& getFormat() const { return _image.getFormat(); }

    std::byte const* getLine(int y) const {
        return _image.getOrigin() + static_cast<std::size_t>(y - getRect().y1) * getLayout().getRowBytes();
    }
    template <class T>
    T const* getLineAs(int y) const {
        return reinterpret_cast<T const*>(getLine(y));
    }

private:
    ImImageConst _image;
};

} // namespace Qv
