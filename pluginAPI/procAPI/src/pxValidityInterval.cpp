#include "pxValidityInterval.h"

#include "assertions.h"
#include "rational.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <limits>

namespace Qv {

PxValidityInterval const PxValidityInterval::FULL(PxValidityInterval::TIME_MIN, PxValidityInterval::TIME_MAX);
PxValidityInterval const PxValidityInterval::EMPTY(PxValidityInterval::TIME_MAX,
                                                   PxValidityInterval::TIME_MIN);

PxValidityInterval PxValidityInterval::createFrameInterval(double rate, double time) {
    QV_ASSERT(rate > 0.0);
    // Frame f starts at f / rate. The frame is chosen against those very
    // boundaries, so that frames partition time exactly whatever the rounding
    // of time * rate, and the interval always holds the time it was made for.
    double frame = std::floor(time * rate);
    while (time < frame / rate)
        frame -= 1.0;
    while (time >= (frame + 1.0) / rate)
        frame += 1.0;
    double const nextStart = (frame + 1.0) / rate;
    return PxValidityInterval(frame / rate,
                              std::nextafter(nextStart, -std::numeric_limits<double>::infinity()));
}

PxValidityInterval PxValidityInterval::createFrameInterval(Rational const& rate, double time) {
    return createFrameInterval(rate.getDouble(), time);
}

PxValidityInterval& PxValidityInterval::intersect(PxValidityInterval const& other) {
    _start = std::max(_start, other._start);
    _end = std::min(_end, other._end);
    return *this;
}

std::string PxValidityInterval::dump() const {
    return fmt::format("[{}, {}]", _start, _end);
}

} // namespace Qv
