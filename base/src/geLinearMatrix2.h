#pragma once
// A 2x2 matrix acting on column vectors: v' = M v, with
//   x' = m00 * x + m01 * y
//   y' = m10 * x + m11 * y
#include "geEx.h"
#include "geVector.h"

#include <fmt/format.h>
#include <ostream>
#include <string>

namespace Qv {

template <class T>
struct GeLinearMatrix2 {
    T m00{1};
    T m01{0};
    T m10{0};
    T m11{1};

    void setIdentity() { *this = GeLinearMatrix2{}; }
    static GeLinearMatrix2 scaling(T sx, T sy) { return {sx, 0, 0, sy}; }

    T getDeterminant() const { return m00 * m11 - m01 * m10; }
    GeLinearMatrix2 getTransposed() const { return {m00, m10, m01, m11}; }
    // Throws GeEx::ExDivisionByZero for a singular matrix.
    GeLinearMatrix2 getInverse() const {
        T const det = getDeterminant();
        if (det == T(0))
            throw GeEx::ExDivisionByZero(__FILE__, __LINE__, "inverse of a singular matrix " + dump());
        return {m11 / det, -m01 / det, -m10 / det, m00 / det};
    }

    GeVector2<T> operator*(GeVector2<T> const& v) const {
        return {m00 * v.x + m01 * v.y, m10 * v.x + m11 * v.y};
    }
    // (a * b) v == a (b v).
    friend GeLinearMatrix2 operator*(GeLinearMatrix2 const& a, GeLinearMatrix2 const& b) {
        return {a.m00 * b.m00 + a.m01 * b.m10, a.m00 * b.m01 + a.m01 * b.m11, a.m10 * b.m00 + a.m11 * b.m10,
                a.m10 * b.m01 + a.m11 * b.m11};
    }
    friend bool operator==(GeLinearMatrix2 const&, GeLinearMatrix2 const&) = default;

    std::string dump() const { return fmt::format("[[{}, {}], [{}, {}]]", m00, m01, m10, m11); }
    friend std::ostream& operator<<(std::ostream& os, GeLinearMatrix2 const& m) { return os << m.dump(); }
};

} // namespace Qv
