#pragma once
// Colour records: red, green, blue and, for RGBA, alpha, of one component type.
#include <fmt/format.h>
#include <ostream>

namespace Qv {

template <class T>
struct CoRgbaColorTyped {
    T r{};
    T g{};
    T b{};
    T a{};

    // All four components zero: transparent black.
    static CoRgbaColorTyped const ZERO;

    friend bool operator==(CoRgbaColorTyped const&, CoRgbaColorTyped const&) = default;
    friend std::ostream& operator<<(std::ostream& os, CoRgbaColorTyped const& c) {
        return os << fmt::format("rgba({}, {}, {}, {})", c.r, c.g, c.b, c.a);
    }
};

template <class T>
inline CoRgbaColorTyped<T> const CoRgbaColorTyped<T>::ZERO{};

template <class T>
struct CoRgbColorTyped {
    T r{};
    T g{};
    T b{};

    friend bool operator==(CoRgbColorTyped const&, CoRgbColorTyped const&) = default;
    friend std::ostream& operator<<(std::ostream& os, CoRgbColorTyped const& c) {
        return os << fmt::format("rgb({}, {}, {})", c.r, c.g, c.b);
    }
};

} // namespace Qv
