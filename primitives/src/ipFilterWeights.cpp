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
    _taps = static_cast<int>(std::ceil(2.0 * support)) + 1;
    _start.resize(static_cast<std::size_t>(n));
    _weights.assign(static_cast<std::size_t>(n) * _taps, 0.0f);
    int first = 0;
    int last = 0;
    for (int i = 0; i < n; ++i) {
        double const centre = (output.x1 + i + 0.5) / scale - 0.5;
        int const start = static_cast<int>(std::ceil(centre - support));
        float* weights = _weights.data() + static_cast<std::size_t>(i) * _taps;
        double sum = 0.0;
        for (int k = 0; k < _taps; ++k) {
            weights[k] = filter.evaluate(static_cast<float>((start + k - centre) * stretch));
            sum += weights[k];
        }
        for (int k = 0; k < _taps; ++k)
            weights[k] = static_cast<float>(weights[k] / sum);
        _start[static_cast<std::size_t>(i)] = start;
        first = i == 0 ? start : std::min(first, start);
        last = i == 0 ? start + _taps : std::max(last, start + _taps);
    }
    _source = n ? GeInterval<int>{first, last} : GeInterval<int>{output.x1, output.x1};
}

} // namespace Qv
