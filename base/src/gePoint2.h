#pragma once
// A position in the plane. Points differ by vectors: point - point is a
// vector, point + vector a point.
#include "geVector.h"

#include <fmt/format.h>
#include <ostream>
#include <string>

namespace Qv {

template <class T>
struct GePoint2 {
    T x{};
    T y{};

    GePoint2& operator+=(GeVector2<T> const& v) {
        x += v.x;
        y += v.y;
        return *this;
    }
    GePoint2& operator-=(GeVector2<T> const& v) {
        x -= v.x;
        y -= v.y;
        return *this;
    }

    friend GePoint2 operator+(GePoint2 p, GeVector2<T> const& v) { return p += v; }
    friend GePoint2 operator-(GePoint2 p, GeVector2<T> const& v) { return p -= v; }
    friend GeVector2<T> operator-(GePoint2 const& a, GePoint2 const& b) { return {a.x - b.x, a.y - b.y}; }
    friend bool operator==(GePoint2 const&, GePoint2 const&) = default;

    std::string dump() const { return fmt::format("({}, {})", x, y); }
    friend std::ostream& operator<<(std::ostream& os, GePoint2 const& p) { return os << p.dump(); }
};

} // namespace Qv
