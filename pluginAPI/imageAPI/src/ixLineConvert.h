#pragma once
// Whole runs of pixels converted between a tile's components and the float
// forms that scanlines hold: RGBA colours, or one float (the first component).
// One call per run, so that the per-pixel loop has no branch and vectorises.
#include "ixPixelTypes.h"

namespace Qv {

template <int N, class S>
void ixLineToRgba(S const* src, CoRgbaColorTyped<float>* dst, int count) {
    for (int i = 0; i < count; ++i)
        dst[i] = ixLoadRgba<N>(src + i * N);
}

template <int N, class D>
void ixLineFromRgba(CoRgbaColorTyped<float> const* src, D* dst, int count) {
    for (int i = 0; i < count; ++i)
        ixStoreRgba<N>(dst + i * N, src[i]);
}

template <int N, class S>
void ixLineToFloat(S const* src, float* dst, int count) {
    for (int i = 0; i < count; ++i)
        dst[i] = IxComponent<S>::toFloat(src[i * N]);
}

// Into every component, so that a grey line written to RGB stays grey.
template <int N, class D>
void ixLineFromFloat(float const* src, D* dst, int count) {
    for (int i = 0; i < count; ++i)
        for (int c = 0; c < N; ++c)
            dst[i * N + c] = IxComponent<D>::fromFloat(src[i]);
}

} // namespace Qv
