#pragma once
// Operations on rectangles that build a new one from an old.
#include "geRectangle.h"

namespace Qv {

struct GeRectangleUtil {
    // The rectangle grown by n on each of its four sides (shrunk for negative n),
    // as a filter of half-width n needs around the pixels it computes.
    template <class T>
    [[nodiscard]] static GeRectangle<T> addBorder(GeRectangle<T> const& rectangle, T n) {
        return {rectangle.x1 - n, rectangle.x2 + n, rectangle.y1 - n, rectangle.y2 + n};
    }
};

} // namespace Qv
