#include "ipHalfConvert.h"

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#define QV_HAS_F16C_PATH 1
#endif

namespace Qv {

namespace {

#ifdef QV_HAS_F16C_PATH
bool const gHasF16c = __builtin_cpu_supports("avx") && __builtin_cpu_supports("f16c");

__attribute__((target("avx,f16c"))) void floatToHalfF16c(float const* src, IxHalf* dst, std::size_t count) {
    std::size_t i = 0;
    for (; i + 8 <= count; i += 8) {
        __m128i const h = _mm256_cvtps_ph(_mm256_loadu_ps(src + i), _MM_FROUND_TO_NEAREST_INT);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + i), h);
    }
    for (; i < count; ++i)
        dst[i] = IxHalf(src[i]);
}

__attribute__((target("avx,f16c"))) void halfToFloatF16c(IxHalf const* src, float* dst, std::size_t count) {
    std::size_t i = 0;
    for (; i + 8 <= count; i += 8)
        _mm256_storeu_ps(dst + i,
                         _mm256_cvtph_ps(_mm_loadu_si128(reinterpret_cast<__m128i const*>(src + i))));
    for (; i < count; ++i)
        dst[i] = static_cast<float>(src[i]);
}
#endif

} // namespace

void ipFloatToHalf(float const* src, IxHalf* dst, std::size_t count) {
#ifdef QV_HAS_F16C_PATH
    if (gHasF16c)
        return floatToHalfF16c(src, dst, count);
#endif
    for (std::size_t i = 0; i < count; ++i)
        dst[i] = IxHalf(src[i]);
}

void ipHalfToFloat(IxHalf const* src, float* dst, std::size_t count) {
#ifdef QV_HAS_F16C_PATH
    if (gHasF16c)
        return halfToFloatF16c(src, dst, count);
#endif
    for (std::size_t i = 0; i < count; ++i)
        dst[i] = static_cast<float>(src[i]);
}

} // namespace Qv
