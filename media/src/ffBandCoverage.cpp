#include "ffBandCoverage.h"

#include <algorithm>

namespace Qv {

void FfBandCoverage::add(int x1, int x2) {
    if (x1 >= x2)
        return;
    // The runs the new one overlaps or touches merge into it.
    auto first = std::lower_bound(_runs.begin(), _runs.end(), x1,
                                  [](std::pair<int, int> const& run, int x) { return run.second < x; });
    auto last = first;
    for (; last != _runs.end() && last->first <= x2; ++last) {
        x1 = std::min(x1, last->first);
        x2 = std::max(x2, last->second);
    }
    _runs.insert(_runs.erase(first, last), {x1, x2});
}

bool FfBandCoverage::isComplete() const {
    return _width <= 0 || (_runs.size() == 1 && _runs.front().first <= 0 && _runs.front().second >= _width);
}

std::pair<int, int> FfBandCoverage::firstGap() const {
    if (isComplete())
        return {_width, _width};
    if (_runs.empty() || _runs.front().first > 0)
        return {0, _runs.empty() ? _width : _runs.front().first};
    return {_runs.front().second, _runs.size() > 1 ? _runs[1].first : _width};
}

} // namespace Qv
