#include "ipFilterWeights.h"

#include <algorithm>
#include <cmath>

namespace Qv {

IpFilterWeights::IpFilterWeights(IpFilters::Filter const& filter, float scale,
                                 GeInterval<int> const& output) {
    int const n = std::max(0, output.getLength());
    _identity = scale == 1.0f;
    if (_identity) {
        _source = output;
        for (int i = 0; i < n; ++i)
            _start.push_back(output.x1 + i);
        _weights.assign(static_cast<std::size_t>(n), 1.0f);
        return;
    }
    // Shrinking widens the kernel by 1 / scale; enlarging keeps it.
    double const stretch = std::min(1.0, static_cast<double>(scale));
    double const support = filter.getRadius() / stretch;
    int const reach = static_cast<int>(std::ceil(2.0 * support)) + 1;
    std::vector<float> raw(static_cast<std::size_t>(n) * reach);
    std::vector<int> rawStart(static_cast<std::size_t>(n));
    // The kernel's zeros at the ends of a footprint are dropped, so that no
    // tap is spent on them: taps = the widest run from a first to a last non-zero weight.
    std::vector<int> lead(static_cast<std::size_t>(n), 0);
    _taps = 1;
    for (int i = 0; i < n; ++i) {
        double const centre = (output.x1 + i + 0.5) / scale - 0.5;
        int const start = static_cast<int>(std::ceil(centre - support));
        float* weights = raw.data() + static_cast<std::size_t>(i) * reach;
        double sum = 0.0;
        for (int k = 0; k < reach; ++k) {
            weights[k] = filter.evaluate(static_cast<float>((start + k - centre) * stretch));
            sum += weights[k];
        }
        int first = reach;
        int last = -1;
        for (int k = 0; k < reach; ++k) {
            weights[k] = static_cast<float>(weights[k] / sum);
            if (weights[k] != 0.0f) {
                first = std::min(first, k);
                last = k;
            }
        }
        first = std::min(first, last < 0 ? 0 : first);
        lead[static_cast<std::size_t>(i)] = first;
        rawStart[static_cast<std::size_t>(i)] = start;
        _taps = std::max(_taps, last - first + 1);
    }
    _start.resize(static_cast<std::size_t>(n));
    _weights.assign(static_cast<std::size_t>(n) * _taps, 0.0f);
    int first = 0;
    int last = 0;
    for (int i = 0; i < n; ++i) {
        std::size_t const u = static_cast<std::size_t>(i);
        int const start = rawStart[u] + lead[u];
        for (int k = 0; k < _taps && lead[u] + k < reach; ++k)
            _weights[u * _taps + k] = raw[u * reach + lead[u] + k];
        _start[u] = start;
        first = i == 0 ? start : std::min(first, start);
        last = i == 0 ? start + _taps : std::max(last, start + _taps);
    }
    _source = n ? GeInterval<int>{first, last} : GeInterval<int>{output.x1, output.x1};
}

} // namespace Qv
