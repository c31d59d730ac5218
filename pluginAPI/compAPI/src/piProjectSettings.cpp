#include "piProjectSettings.h"

#include "assertions.h"

#include <memory>

namespace Qv {

namespace {
// Initialised and finalised by the platform package, on the application thread.
std::unique_ptr<PiProjectSettings> gInstance;
} // namespace

PiProjectSettings::PiProjectSettings()
    : PiSettings({{"FrameRateNumerator", 24},
                  {"FrameRateDenominator", 1},
                  {"ImageWidth", 1920},
                  {"ImageHeight", 1080}}) {}

PiProjectSettings& PiProjectSettings::getInstance() {
    QV_ASSERT(isInitialized());
    return *gInstance;
}

bool PiProjectSettings::isInitialized() {
    return gInstance != nullptr;
}

void PiProjectSettings::initialize() {
    gInstance.reset(new PiProjectSettings);
}

void PiProjectSettings::finalize() {
    gInstance.reset();
}

} // namespace Qv
