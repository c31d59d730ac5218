#include "ipScanlineUtil.h"

#include "ipFilterWeights.h"

#include <algorithm>
#include <array>

namespace Qv {

namespace {

using Rgba = CoRgbaColorTyped<float>;
constexpr int TAPS = IpScanlineUtil::LANCZOS2_TAPS;

// Output pixel 0 at half scale reads input pixels -3 .. 4.
std::array<float, TAPS> makeWeights() {
    IpFilterWeights const weights(IpFilters::Lanczos2, 0.5f, GeInterval<int>{0, 1});
    std::array<float, TAPS> result{};
    int const offset = weights.getStart(0) + 3;
    for (int k = 0; k < weights.getTaps(); ++k)
        if (offset + k >= 0 && offset + k < TAPS)
            result[static_cast<std::size_t>(offset + k)] += weights.getWeights(0)[k];
    return result;
}

std::array<float, TAPS> const gWeights = makeWeights();

} // namespace

float const* IpScanlineUtil::getLanczos2Weights() {
    return gWeights.data();
}

void IpScanlineUtil::lanczos2Filter(IxScanline<Rgba>& dst, IxScanline<Rgba> const& src) {
    GeInterval<int> const in = src.getInterval();
    GeInterval<int> const out = dst.getInterval();
    // Output columns whose taps all lie in src: ceil((in.x1 + 3) / 2) <= x <= floor((in.x2 - 5) / 2).
    auto floorDiv2 = [](int v) { return v >= 0 ? v / 2 : -((1 - v) / 2); };
    int const fast1 = std::clamp(-floorDiv2(-(in.x1 + 3)), out.x1, out.x2);
    int const fast2 = std::clamp(floorDiv2(in.x2 - 5) + 1, fast1, out.x2);
    float const* w = gWeights.data();
    // The edges, where taps may fall outside src.
    auto checked = [&](int x) {
        Rgba sum{};
        for (int k = 0; k < TAPS; ++k) {
            int const sx = 2 * x - 3 + k;
            if (!in.contains(sx))
                continue;
            Rgba const& p = src[sx];
            sum.r += w[k] * p.r;
            sum.g += w[k] * p.g;
            sum.b += w[k] * p.b;
            sum.a += w[k] * p.a;
        }
        dst[x] = sum;
    };
    for (int x = out.x1; x < fast1; ++x)
        checked(x);
    for (int x = fast1; x < fast2; ++x) {
        float const* p = reinterpret_cast<float const*>(&src[2 * x - 3]);
        float sum[4] = {0, 0, 0, 0};
        for (int k = 0; k < TAPS; ++k)
            for (int c = 0; c < 4; ++c)
                sum[c] += w[k] * p[4 * k + c];
        dst[x] = {sum[0], sum[1], sum[2], sum[3]};
    }
    for (int x = fast2; x < out.x2; ++x)
        checked(x);
}

void IpScanlineUtil::lanczos2Filter(IxScanline<Rgba>& dst, Rgba const* const* taps) {
    int const n = 4 * dst.getLength();
    float* out = reinterpret_cast<float*>(dst.getData());
    std::fill(out, out + n, 0.0f);
    for (int k = 0; k < TAPS; ++k) {
        float const w = gWeights[static_cast<std::size_t>(k)];
        float const* line = reinterpret_cast<float const*>(taps[k]);
        for (int i = 0; i < n; ++i)
            out[i] += w * line[i];
    }
}

} // namespace Qv
