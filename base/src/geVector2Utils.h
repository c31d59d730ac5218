#pragma once
// Angles between plane vectors.
#include "geVector.h"

#include <cmath>

namespace Qv {

template <class T>
struct GeVector2Utils {
    // The angle in radians that turns a onto b, in [-pi, pi]: positive
    // counter-clockwise (the sign of a.cross(b)). A zero vector gives 0.
    static T getAngle(GeVector2<T> const& a, GeVector2<T> const& b) {
        return std::atan2(a.cross(b), a.dot(b));
    }
};

} // namespace Qv
