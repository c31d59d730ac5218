#include "ipComponentConvert.h"

#if defined(__x86_64__) || defined(__i386__)
#include <cpuid.h>
#include <immintrin.h>
#define QV_HAS_F16C_PATH 1
#endif

namespace Qv {

namespace {

#ifdef QV_HAS_F16C_PATH
// CPUID rather than __builtin_cpu_supports: clang 14, which builds the fuzz
// targets, does not know the "f16c" feature name. The conversions use YMM
// registers, so the system must also save their state (OSXSAVE, XCR0 bits 1-2).
bool hasF16c() {
    unsigned eax = 0, ebx = 0, ecx = 0, edx = 0;
    if (!__get_cpuid(1, &eax, &ebx, &ecx, &edx))
        return false;
    unsigned const osxsave = 1u << 27, avx = 1u << 28, f16c = 1u << 29;
    if ((ecx & (osxsave | avx | f16c)) != (osxsave | avx | f16c))
        return false;
    unsigned xcr0 = 0, xcr0High = 0;
    __asm__("xgetbv" : "=a"(xcr0), "=d"(xcr0High) : "c"(0));
    return (xcr0 & 0x6u) == 0x6u;
}

bool const gHasF16c = hasF16c();

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

void ipFloatToUint8(float const* src, std::uint8_t* dst, std::size_t count) {
    std::size_t i = 0;
#ifdef __SSE2__
    // min(1, v) then max(., 0) in this operand order turns NaN into 0, as the
    // scalar form does; truncating v * 255 + 0.5 rounds to the nearest step.
    __m128 const one = _mm_set1_ps(1.0f);
    __m128 const zero = _mm_setzero_ps();
    __m128 const scale = _mm_set1_ps(255.0f);
    __m128 const half = _mm_set1_ps(0.5f);
    auto convert4 = [&](float const* p) {
        __m128 const clamped = _mm_max_ps(_mm_min_ps(one, _mm_loadu_ps(p)), zero);
        return _mm_cvttps_epi32(_mm_add_ps(_mm_mul_ps(clamped, scale), half));
    };
    for (; i + 16 <= count; i += 16) {
        __m128i const low = _mm_packs_epi32(convert4(src + i), convert4(src + i + 4));
        __m128i const high = _mm_packs_epi32(convert4(src + i + 8), convert4(src + i + 12));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + i), _mm_packus_epi16(low, high));
    }
#endif
    for (; i < count; ++i)
        dst[i] = IxComponent<std::uint8_t>::fromFloat(src[i]);
}

} // namespace Qv
