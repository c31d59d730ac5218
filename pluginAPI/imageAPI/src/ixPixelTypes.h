#pragma once
// The C++ type of each pixel depth, the conversions of one component to and
// from float, and the mapping of each component count to and from RGBA:
//   ALPHA  one component, the alpha:   a      <-> (0, 0, 0, a)
//   RGB    three components, opaque:   r g b  <-> (r, g, b, 1)
//   RGBA   four components:            r g b a <-> (r, g, b, a)
// Kernels are templates over these types, chosen once per call with
// ixVisitDepth, never per pixel.
#include "coColor.h"
#include "ixEx.h"
#include "ixPixelFormat.h"

#include <Imath/half.h>
#include <algorithm>
#include <cstdint>
#include <fmt/format.h>
#include <type_traits>

namespace Qv {

using IxHalf = Imath::half;

template <class T>
struct IxComponent;

template <>
struct IxComponent<std::uint8_t> {
    static constexpr IxPixelFormat::Depth DEPTH = IxPixelFormat::UINT8;
    // A division, not a multiply by 1 / 255: k / 255 exactly, as float arithmetic rounds it.
    static float toFloat(std::uint8_t v) { return static_cast<float>(v) / 255.0f; }
    // Clamped to [0, 1] and rounded to the nearest step; NaN becomes 0. Written
    // as min then max so that it compiles to vector min/max without branches.
    static std::uint8_t fromFloat(float v) {
        float const clamped = std::max(0.0f, std::min(v, 1.0f));
        return static_cast<std::uint8_t>(static_cast<int>(clamped * 255.0f + 0.5f));
    }
};

template <>
struct IxComponent<IxHalf> {
    static constexpr IxPixelFormat::Depth DEPTH = IxPixelFormat::FLOAT16;
    static float toFloat(IxHalf v) { return static_cast<float>(v); }
    static IxHalf fromFloat(float v) { return IxHalf(v); }
};

template <>
struct IxComponent<float> {
    static constexpr IxPixelFormat::Depth DEPTH = IxPixelFormat::FLOAT32;
    static float toFloat(float v) { return v; }
    static float fromFloat(float v) { return v; }
};

// The text of the failure of an operation given a format it cannot process.
[[noreturn]] inline void ixThrowUnsupported(char const* operation, IxPixelFormat const& format) {
    throw IxEx::ExUnsupportedFormat(
        __FILE__, __LINE__,
        fmt::format("{}: pixels of format {} are not supported", operation, format.dump()));
}

// Calls f with a value of the component type of the format's depth, so that f
// instantiates its kernel for it. COMPLEX (and an invalid format) throws
// IxEx::ExUnsupportedFormat naming `operation`.
template <class F>
decltype(auto) ixVisitDepth(IxPixelFormat const& format, char const* operation, F&& f) {
    switch (format.isValid() ? format.getDepth() : IxPixelFormat::COMPLEX) {
    case IxPixelFormat::UINT8:
        return f(std::uint8_t{});
    case IxPixelFormat::FLOAT16:
        return f(IxHalf{});
    case IxPixelFormat::FLOAT32:
        return f(float{});
    case IxPixelFormat::COMPLEX:
        break;
    }
    ixThrowUnsupported(operation, format);
}

// Calls f with std::integral_constant<int, comps> for the format's comps.
template <class F>
decltype(auto) ixVisitComps(IxPixelFormat const& format, F&& f) {
    switch (format.getComps()) {
    case IxPixelFormat::ALPHA:
        return f(std::integral_constant<int, 1>{});
    case IxPixelFormat::RGB:
        return f(std::integral_constant<int, 3>{});
    case IxPixelFormat::RGBA:
        break;
    }
    return f(std::integral_constant<int, 4>{});
}

// One pixel of N components of type T, to and from RGBA floats.
template <int N, class T>
CoRgbaColorTyped<float> ixLoadRgba(T const* p) {
    using C = IxComponent<T>;
    if constexpr (N == 1)
        return {0.0f, 0.0f, 0.0f, C::toFloat(p[0])};
    else if constexpr (N == 3)
        return {C::toFloat(p[0]), C::toFloat(p[1]), C::toFloat(p[2]), 1.0f};
    else
        return {C::toFloat(p[0]), C::toFloat(p[1]), C::toFloat(p[2]), C::toFloat(p[3])};
}

template <int N, class T>
void ixStoreRgba(T* p, CoRgbaColorTyped<float> const& c) {
    using C = IxComponent<T>;
    if constexpr (N == 1) {
        p[0] = C::fromFloat(c.a);
    } else {
        p[0] = C::fromFloat(c.r);
        p[1] = C::fromFloat(c.g);
        p[2] = C::fromFloat(c.b);
        if constexpr (N == 4)
            p[3] = C::fromFloat(c.a);
    }
}

} // namespace Qv
