#pragma once
// Plain two- and three-component vectors with the usual arithmetic.
#include "geEx.h"

#include <cmath>
#include <fmt/format.h>
#include <ostream>
#include <string>
#include <type_traits>

namespace Qv {

namespace GeDetail {
// Integer division by zero would stop the process; floating point has its infinities.
template <class T>
void checkDivisor(T divisor) {
    if constexpr (std::is_integral_v<T>) {
        if (divisor == 0)
            throw GeEx::ExDivisionByZero(__FILE__, __LINE__, "integer vector divided by zero");
    }
}
} // namespace GeDetail

template <class T>
struct GeVector2 {
    T x{};
    T y{};

    GeVector2& operator+=(GeVector2 const& v) {
        x += v.x;
        y += v.y;
        return *this;
    }
    GeVector2& operator-=(GeVector2 const& v) {
        x -= v.x;
        y -= v.y;
        return *this;
    }
    GeVector2& operator*=(T s) {
        x *= s;
        y *= s;
        return *this;
    }
    GeVector2& operator/=(T s) {
        GeDetail::checkDivisor(s);
        x /= s;
        y /= s;
        return *this;
    }

    friend GeVector2 operator+(GeVector2 a, GeVector2 const& b) { return a += b; }
    friend GeVector2 operator-(GeVector2 a, GeVector2 const& b) { return a -= b; }
    friend GeVector2 operator-(GeVector2 const& v) { return {-v.x, -v.y}; }
    friend GeVector2 operator*(GeVector2 v, T s) { return v *= s; }
    friend GeVector2 operator*(T s, GeVector2 v) { return v *= s; }
    friend GeVector2 operator/(GeVector2 v, T s) { return v /= s; }
    friend bool operator==(GeVector2 const&, GeVector2 const&) = default;

    T dot(GeVector2 const& v) const { return x * v.x + y * v.y; }
    // The z of the three-dimensional cross product: positive when v turns
    // counter-clockwise from this vector.
    T cross(GeVector2 const& v) const { return x * v.y - y * v.x; }
    auto getLength() const { return std::sqrt(x * x + y * y); }

    std::string dump() const { return fmt::format("({}, {})", x, y); }
    friend std::ostream& operator<<(std::ostream& os, GeVector2 const& v) { return os << v.dump(); }
};

template <class T>
struct GeVector3 {
    T x{};
    T y{};
    T z{};

    GeVector3& operator+=(GeVector3 const& v) {
        x += v.x;
        y += v.y;
        z += v.z;
        return *this;
    }
    GeVector3& operator-=(GeVector3 const& v) {
        x -= v.x;
        y -= v.y;
        z -= v.z;
        return *this;
    }
    GeVector3& operator*=(T s) {
        x *= s;
        y *= s;
        z *= s;
        return *this;
    }
    GeVector3& operator/=(T s) {
        GeDetail::checkDivisor(s);
        x /= s;
        y /= s;
        z /= s;
        return *this;
    }

    friend GeVector3 operator+(GeVector3 a, GeVector3 const& b) { return a += b; }
    friend GeVector3 operator-(GeVector3 a, GeVector3 const& b) { return a -= b; }
    friend GeVector3 operator-(GeVector3 const& v) { return {-v.x, -v.y, -v.z}; }
    friend GeVector3 operator*(GeVector3 v, T s) { return v *= s; }
    friend GeVector3 operator*(T s, GeVector3 v) { return v *= s; }
    friend GeVector3 operator/(GeVector3 v, T s) { return v /= s; }
    friend bool operator==(GeVector3 const&, GeVector3 const&) = default;

    T dot(GeVector3 const& v) const { return x * v.x + y * v.y + z * v.z; }
    // Right-handed.
    GeVector3 cross(GeVector3 const& v) const {
        return {y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x};
    }
    auto getLength() const { return std::sqrt(x * x + y * y + z * z); }

    std::string dump() const { return fmt::format("({}, {}, {})", x, y, z); }
    friend std::ostream& operator<<(std::ostream& os, GeVector3 const& v) { return os << v.dump(); }
};

} // namespace Qv
