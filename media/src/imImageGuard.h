#pragma once
// What read and write guards of file-side images share: the image they
// map and the address of its rows; y in the image's rectangle.
#include "assertions.h"
#include "imImageConst.h"

#include <cstddef>

namespace Qv {

class ImImageGuard {
public:
    ImImageConst const& getImage() const { return _image; }
    ImLayout const& getLayout() const { return _image.getLayout(); }
    GeRectangle<int> const& getRect() const { return _image.getRect(); }
    ImFormat const& getFormat() const { return _image.getFormat(); }

protected:
    ImImageGuard() = default;
    // Asserts that the image is not null.
    explicit ImImageGuard(ImImageConst const& image) : _image(image) { QV_ASSERT(!image.isNull()); }

    std::byte* lineAddress(int y) const {
        return _image.getOrigin() + static_cast<std::size_t>(y - getRect().y1) * getLayout().getRowBytes();
    }

private:
    ImImageConst _image;
};

} // namespace Qv
