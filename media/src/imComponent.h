#pragma once
// The component kernels of file-side images: the tile kernels' types plus
// 16-bit integers and two components (grey and alpha). Each format is picked
// once per call with imVisitFormat, never per pixel.
#include "imFormat.h"
#include "ixPixelTypes.h"

#include <cstdint>
#include <type_traits>

namespace Qv {

// 16-bit integers map [0, 65535] onto [0, 1], clamped and rounded like UINT8.
template <>
struct IxComponent<std::uint16_t> {
    static float toFloat(std::uint16_t v) { return static_cast<float>(v) / 65535.0f; }
    static std::uint16_t fromFloat(float v) {
        float const clamped = std::max(0.0f, std::min(v, 1.0f));
        return static_cast<std::uint16_t>(static_cast<int>(clamped * 65535.0f + 0.5f));
    }
};

// Grey and alpha read as (g, g, g, a) and store red and alpha; the other
// counts as tiles read them.
template <int N, class T>
CoRgbaColorTyped<float> imLoadRgba(T const* p) {
    if constexpr (N == 2) {
        float const g = IxComponent<T>::toFloat(p[0]);
        return {g, g, g, IxComponent<T>::toFloat(p[1])};
    } else {
        return ixLoadRgba<N>(p);
    }
}

template <int N, class T>
void imStoreRgba(T* p, CoRgbaColorTyped<float> const& c) {
    if constexpr (N == 2) {
        p[0] = IxComponent<T>::fromFloat(c.r);
        p[1] = IxComponent<T>::fromFloat(c.a);
    } else {
        ixStoreRgba<N>(p, c);
    }
}

// Calls f(T{}, std::integral_constant<int, comps>{}) for the image format.
template <class F>
decltype(auto) imVisitFormat(ImFormat const& format, F&& f) {
    auto byComps = [&](auto component) -> decltype(auto) {
        switch (format.getComps()) {
        case 1:
            return f(component, std::integral_constant<int, 1>{});
        case 2:
            return f(component, std::integral_constant<int, 2>{});
        case 3:
            return f(component, std::integral_constant<int, 3>{});
        default:
            return f(component, std::integral_constant<int, 4>{});
        }
    };
    switch (format.getPixelFormat().getDepth()) {
    case ImPixelFormat::UINT8:
        return byComps(std::uint8_t{});
    case ImPixelFormat::UINT16:
        return byComps(std::uint16_t{});
    case ImPixelFormat::ECR:
        return byComps(IxHalf{});
    case ImPixelFormat::HDR:
        break;
    }
    return byComps(float{});
}

} // namespace Qv
