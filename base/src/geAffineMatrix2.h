#pragma once
// A plane transform: a linear part, then a translation. Points move,
// p' = L p + t; vectors only turn and stretch, v' = L v.
#include "geLinearMatrix2.h"
#include "gePoint2.h"

namespace Qv {

template <class T>
struct GeAffineMatrix2 {
    GeLinearMatrix2<T> linear{};
    GeVector2<T> translation{};

    void setIdentity() { *this = GeAffineMatrix2{}; }

    GePoint2<T> operator*(GePoint2<T> const& p) const {
        GeVector2<T> const v = linear * GeVector2<T>{p.x, p.y} + translation;
        return {v.x, v.y};
    }
    GeVector2<T> operator*(GeVector2<T> const& v) const { return linear * v; }
    // (a * b) p == a (b p).
    friend GeAffineMatrix2 operator*(GeAffineMatrix2 const& a, GeAffineMatrix2 const& b) {
        return {a.linear * b.linear, a.linear * b.translation + a.translation};
    }
    // Throws GeEx::ExDivisionByZero when the linear part is singular.
    GeAffineMatrix2 getInverse() const {
        GeLinearMatrix2<T> const inverse = linear.getInverse();
        return {inverse, -(inverse * translation)};
    }
    friend bool operator==(GeAffineMatrix2 const&, GeAffineMatrix2 const&) = default;

    std::string dump() const { return fmt::format("{} + {}", linear.dump(), translation.dump()); }
    friend std::ostream& operator<<(std::ostream& os, GeAffineMatrix2 const& m) { return os << m.dump(); }
};

} // namespace Qv
