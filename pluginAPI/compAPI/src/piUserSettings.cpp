#include "piUserSettings.h"

#include "assertions.h"

#include <memory>

namespace Qv {

namespace {
// Initialised and finalised by the platform package, on the application thread.
std::unique_ptr<PiUserSettings> gInstance;
} // namespace

PiUserSettings::PiUserSettings() : PiSettings({{"ProxyScale", 0}, {"ProxiesOnRead", false}}) {}

PiUserSettings& PiUserSettings::getInstance() {
    QV_ASSERT(isInitialized());
    return *gInstance;
}

bool PiUserSettings::isInitialized() {
    return gInstance != nullptr;
}

void PiUserSettings::initialize() {
    gInstance.reset(new PiUserSettings);
}

void PiUserSettings::finalize() {
    gInstance.reset();
}

} // namespace Qv
