// The platform package "pluginAPI": composition graph and tools.
#include "inInit.h"
#include "inPlatformPackages.h"

namespace Qv {

template <>
InInit<QvInit::pluginAPI>::InInit() : InPackageInit("pluginAPI") {
    registerPackage();
    addDependency(InInit<QvInit::internalAPI>::getType());
    addDependency(InInit<QvInit::resmgt>::getType());
}

template <>
void InInit<QvInit::pluginAPI>::initialize() {}

template <>
void InInit<QvInit::pluginAPI>::finalize() {}

namespace {
InInit<QvInit::pluginAPI> gPackage;
}

} // namespace Qv
