// The platform package "pluginAPI": composition graph and tools.
#include "inInit.h"
#include "inPlatformPackages.h"
#include "piProjectSettings.h"
#include "piUserSettings.h"

namespace Qv {

template <>
InInit<QvInit::pluginAPI>::InInit() : InPackageInit("pluginAPI") {
    registerPackage();
    addDependency(InInit<QvInit::internalAPI>::getType());
    addDependency(InInit<QvInit::resmgt>::getType());
}

template <>
void InInit<QvInit::pluginAPI>::initialize() {
    PiProjectSettings::initialize();
    PiUserSettings::initialize();
}

template <>
void InInit<QvInit::pluginAPI>::finalize() {
    PiUserSettings::finalize();
    PiProjectSettings::finalize();
}

namespace {
InInit<QvInit::pluginAPI> gPackage;
}

} // namespace Qv
