#include "btImageImportServices.h"

#include <cmath>

namespace Qv {

CoRgbColorTyped<float> const& BtImageImportServices::getUnspecifiedBgColor() {
    static CoRgbColorTyped<float> const unspecified{-1000.0f, -1000.0f, -1000.0f};
    return unspecified;
}

bool BtImageImportServices::isUnspecifiedBgColor(CoRgbColorTyped<float> const& colour) {
    CoRgbColorTyped<float> const& unspecified = getUnspecifiedBgColor();
    float constexpr tolerance = 1.0f;
    return std::fabs(colour.r - unspecified.r) <= tolerance &&
           std::fabs(colour.g - unspecified.g) <= tolerance &&
           std::fabs(colour.b - unspecified.b) <= tolerance;
}

} // namespace Qv
