#pragma once
// The weights of one axis of a resampling: for each output pixel of an
// interval, the first input pixel it reads and a fixed number of weights
// (zero-padded), normalised to sum to one so that a constant stays constant.
#include "geInterval.h"
#include "ipFilters.h"

#include <vector>

namespace Qv {

class IpFilterWeights {
public:
    IpFilterWeights(IpFilters::Filter const& filter, float scale, GeInterval<int> const& output);

    // Input pixels read by the output interval.
    GeInterval<int> getSourceInterval() const { return _source; }
    int getTaps() const { return _taps; }
    // First input pixel of output pixel i (counted from the interval's start).
    int getStart(int i) const { return _start[static_cast<std::size_t>(i)]; }
    float const* getWeights(int i) const { return _weights.data() + static_cast<std::size_t>(i) * _taps; }
    // Whether the axis is left as it is: scale 1 maps each pixel onto itself.
    bool isIdentity() const { return _identity; }

private:
    GeInterval<int> _source;
    int _taps = 1;
    bool _identity = false;
    std::vector<int> _start;
    std::vector<float> _weights;
};

} // namespace Qv
