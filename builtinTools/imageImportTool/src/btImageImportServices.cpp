#include "btImageImportServices.h"

#include "assertions.h"
#include "imageImportServices.h"

#include <cmath>
#include <limits>
#include <memory>

namespace Qv {

namespace {
std::unique_ptr<BtImageImportServices> gInstance;
}

std::string const BtImageImportServices::DEFAULT_SOURCE("File");
std::string const BtImageImportServices::DEFAULT_CLIPWAY_SOURCE("Clipway");
Rational const BtImageImportServices::UNSPECIFIED_RATE(0, 1);
Rational const BtImageImportServices::UNSPECIFIED_PIXEL_RATIO(0, 1);
// No footage starts this early.
DtTimeIndex const BtImageImportServices::UNSPECIFIED_START_TIME(std::numeric_limits<std::int64_t>::min());

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

BtImageImportServices& BtImageImportServices::getInstance() {
    QV_ASSERT(isInitialized());
    return *gInstance;
}

bool BtImageImportServices::isInitialized() {
    return gInstance != nullptr;
}

void BtImageImportServices::initialize() {
    gInstance = std::make_unique<ImageImportServices>();
}

void BtImageImportServices::finalize() {
    gInstance.reset();
}

BtImageImportServices::~BtImageImportServices() = default;

} // namespace Qv
