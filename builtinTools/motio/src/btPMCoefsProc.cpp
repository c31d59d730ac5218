#include "btPMCoefsProc.h"

#include <cmath>

#if defined(__x86_64__) || defined(_M_X64)
#include <xmmintrin.h>
#endif

namespace Qv {

namespace {

// Where s is inf or NaN the formulas would give NaN (inf * 0); a large
// finite s gives the limits instead. Written as a compare that keeps the
// bound for NaN, which is what the processor's min does too.
constexpr float MAX_S = 1.0e30f;

inline float boundS(float s) {
    return s < MAX_S ? s : MAX_S;
}

// The processor's reciprocal estimate (about 12 bits), which one Newton step
// below brings to float precision; elsewhere the exact quotient.
#if defined(__x86_64__) || defined(_M_X64)
inline void reciprocalEstimate4(float const* x, float* r) {
    _mm_storeu_ps(r, _mm_rcp_ps(_mm_loadu_ps(x)));
}
inline float reciprocalEstimate(float x) {
    return _mm_cvtss_f32(_mm_rcp_ss(_mm_set_ss(x)));
}
#else
inline void reciprocalEstimate4(float const* x, float* r) {
    for (int k = 0; k < 4; ++k)
        r[k] = 1.0f / x[k];
}
inline float reciprocalEstimate(float x) {
    return 1.0f / x;
}
#endif

inline float squaredScale(BtPMCoefsProc::Rgba const& g, float it) {
    return boundS((g.r * g.r + g.g * g.g + it * it) * BtPMCoefsProc::kDiffusionScale);
}

// 1 / d from the estimate r by one Newton step.
inline float refine(float d, float r) {
    return r + r - d * r * r;
}

} // namespace

void BtPMCoefsProc::processLine(Rgba const* gradient, float const* timeDerivative, Rgba* out, int n) {
    int i = 0;
    for (; i + 4 <= n; i += 4) {
        float s[4];
        float d[4];
        float r[4];
        for (int k = 0; k < 4; ++k) {
            s[k] = squaredScale(gradient[i + k], timeDerivative[i + k]);
            d[k] = 1.0f + s[k];
        }
        reciprocalEstimate4(d, r);
        for (int k = 0; k < 4; ++k)
            out[i + k] = {std::exp(0.0f - s[k]), refine(d[k], r[k]), 0.0f, 1.0f};
    }
    for (; i < n; ++i) {
        float const s = squaredScale(gradient[i], timeDerivative[i]);
        float const d = 1.0f + s;
        out[i] = {std::exp(0.0f - s), refine(d, reciprocalEstimate(d)), 0.0f, 1.0f};
    }
}

} // namespace Qv
