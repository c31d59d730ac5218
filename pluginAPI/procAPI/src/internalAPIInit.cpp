// The platform package "internalAPI": processing graph and requests.
#include "inInit.h"
#include "inPlatformPackages.h"

namespace Qv {

template <>
InInit<QvInit::internalAPI>::InInit() : InPackageInit("internalAPI") {
    registerPackage();
    addDependency(InInit<QvInit::base>::getType());
}

template <>
void InInit<QvInit::internalAPI>::initialize() {}

template <>
void InInit<QvInit::internalAPI>::finalize() {}

namespace {
InInit<QvInit::internalAPI> gPackage;
}

} // namespace Qv
