#pragma once
// Float to integer roundings that say which way they go.
#include <cmath>

namespace Qv {

namespace FloatUtil {

// The smallest integer not below x.
inline int iceil(float x) {
    return static_cast<int>(std::ceil(x));
}

// The largest integer not above x.
inline int ifloor(float x) {
    return static_cast<int>(std::floor(x));
}

} // namespace FloatUtil

} // namespace Qv
