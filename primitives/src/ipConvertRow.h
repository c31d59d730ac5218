#pragma once
// A run of pixels from one pixel format to another, the kernel of copies and
// format changes: a plain copy for equal formats, component by component for
// equal counts, and through RGBA floats when the component counts differ.
#include "ipComponentConvert.h"
#include "ixPixelTypes.h"

#include <cstring>
#include <type_traits>

namespace Qv {

template <int NS, class S, int ND, class D>
void ipConvertRow(S const* src, D* dst, int count) {
    if constexpr (NS == ND) {
        std::size_t const n = static_cast<std::size_t>(count) * NS;
        if constexpr (std::is_same_v<S, D>)
            std::memcpy(dst, src, n * sizeof(S));
        else if constexpr (std::is_same_v<S, float> && std::is_same_v<D, IxHalf>)
            ipFloatToHalf(src, dst, n);
        else if constexpr (std::is_same_v<S, IxHalf> && std::is_same_v<D, float>)
            ipHalfToFloat(src, dst, n);
        else if constexpr (std::is_same_v<S, float> && std::is_same_v<D, std::uint8_t>)
            ipFloatToUint8(src, dst, n);
        else
            for (std::size_t i = 0; i < n; ++i)
                dst[i] = IxComponent<D>::fromFloat(IxComponent<S>::toFloat(src[i]));
    } else {
        for (int i = 0; i < count; ++i)
            ixStoreRgba<ND>(dst + i * ND, ixLoadRgba<NS>(src + i * NS));
    }
}

} // namespace Qv
