#pragma once
// An axis-aligned rectangle, fields in the order x1, x2, y1, y2, for instance
// GeRectangle<int>{.x1 = 0, .x2 = 640, .y1 = 0, .y2 = 480}. x2 and y2 are
// exclusive: the width is x2 - x1, a pixel (x, y) lies inside when
// x1 <= x < x2 and y1 <= y < y2, and rectangles that touch do not overlap.
// The same rules hold for floating-point coordinates.
#include "geInterval.h"

#include <algorithm>
#include <fmt/format.h>
#include <ostream>
#include <string>

namespace Qv {

template <class T>
struct GeRectangle {
    T x1{};
    T x2{};
    T y1{};
    T y2{};

    T getWidth() const { return x2 - x1; }
    T getHeight() const { return y2 - y1; }
    bool isEmpty() const { return !(x2 > x1 && y2 > y1); }

    bool contains(T x, T y) const { return x1 <= x && x < x2 && y1 <= y && y < y2; }
    // By coordinates alone: other's edges lie within this rectangle's.
    bool contains(GeRectangle const& other) const {
        return x1 <= other.x1 && other.x2 <= x2 && y1 <= other.y1 && other.y2 <= y2;
    }

    // The larger x1, y1 and the smaller x2, y2. An empty intersection collapses
    // to zero width and height at this rectangle's minimum corner.
    GeRectangle getIntersection(GeRectangle const& other) const {
        GeRectangle const result{std::max(x1, other.x1), std::min(x2, other.x2), std::max(y1, other.y1),
                                 std::min(y2, other.y2)};
        return result.isEmpty() ? GeRectangle{x1, x1, y1, y1} : result;
    }
    // The smallest rectangle holding both; an empty one adds nothing.
    GeRectangle getBounding(GeRectangle const& other) const {
        if (other.isEmpty())
            return *this;
        if (isEmpty())
            return other;
        return {std::min(x1, other.x1), std::max(x2, other.x2), std::min(y1, other.y1),
                std::max(y2, other.y2)};
    }
    GeRectangle getTranslated(T dx, T dy) const { return {x1 + dx, x2 + dx, y1 + dy, y2 + dy}; }

    GeInterval<T> getXInterval() const { return {x1, x2}; }
    GeInterval<T> getYInterval() const { return {y1, y2}; }

    std::string dump() const { return fmt::format("[{}, {}) x [{}, {})", x1, x2, y1, y2); }

    friend bool operator==(GeRectangle const&, GeRectangle const&) = default;
    friend std::ostream& operator<<(std::ostream& os, GeRectangle const& r) { return os << r.dump(); }
};

} // namespace Qv
