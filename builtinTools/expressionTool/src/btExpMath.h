#pragma once
// The numbers that keep expression arithmetic defined everywhere, and the
// interval of a value that changes with the clock.
#include "pxValidityInterval.h"

#include <algorithm>

namespace Qv::BtExpMath {

// The smallest normal double: what a zero divisor is replaced by.
inline constexpr double EPS = 2.2250738585072014e-308;
// Angles are degrees in the language.
inline constexpr double DEG_TO_RAD = 0.017453292519943295;
inline constexpr double RAD_TO_DEG = 57.29577951308232;
// Half the width of the interval of a value that changes with the clock:
// far below any frame, so that every frame is asked anew.
inline constexpr double TICK = 5.208333333333334e-9;
// What an undefined logarithm gives: the most negative finite double.
inline constexpr double LOG_OF_NEGATIVE = -1.7976931348623157e308;

// A divisor pushed away from zero, keeping its side: a zero (of either sign)
// becomes EPS, so dividing gives a huge finite value, never a failure.
inline double safeDivisor(double d) {
    return d < 0.0 ? std::min(d, -EPS) : std::max(d, EPS);
}

// The interval of a value that depends on the time of the request itself:
// a tick on either side, or the time alone at the two time limits, which
// must not be passed.
inline PxValidityInterval getTimeDependentInterval(double time) {
    if (time == PxValidityInterval::TIME_MIN || time == PxValidityInterval::TIME_MAX)
        return PxValidityInterval(time, time);
    return PxValidityInterval(time - TICK, time + TICK);
}

} // namespace Qv::BtExpMath
