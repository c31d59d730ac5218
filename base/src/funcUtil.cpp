#include "funcUtil.h"

#include <cmath>

namespace Qv {

namespace {
// Clamped to [0, 1]; NaN fails both tests and becomes 0.
double clampUnit(double value) {
    if (!(value > 0.0))
        return 0.0;
    return value < 1.0 ? value : 1.0;
}
} // namespace

double FuncUtil::computeSCurve(double position, double easeIn, double easeOut) {
    double const p = clampUnit(position);
    double a = clampUnit(easeIn);
    double b = clampUnit(easeOut);
    if (a + b > 1.0) {
        double const scale = 1.0 / (a + b);
        a *= scale;
        b *= scale;
    }
    // The speed rises linearly to its peak over [0, a], holds, and falls
    // linearly to zero over [1 - b, 1]; the peak makes the distance 1.
    double const peak = 2.0 / (2.0 - a - b);
    if (p < a)
        return peak * p * p / (2.0 * a);
    if (p > 1.0 - b) {
        double const rest = 1.0 - p;
        return 1.0 - peak * rest * rest / (2.0 * b);
    }
    return peak * (p - 0.5 * a);
}

double FuncUtil::computeGaussCurve(double time, double center, double width, double height) {
    double const offset = time - center;
    if (width == 0.0)
        return offset == 0.0 ? height : 0.0;
    double const scaled = offset / width;
    return height * std::exp(-0.5 * scaled * scaled);
}

} // namespace Qv
