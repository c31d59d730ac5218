// The platform package "resmgt": message catalogues and resources.
#include "inInit.h"
#include "inPlatformPackages.h"

namespace Qv {

template <>
InInit<QvInit::resmgt>::InInit() : InPackageInit("resmgt") {
    registerPackage();
    addDependency(InInit<QvInit::base>::getType());
}

template <>
void InInit<QvInit::resmgt>::initialize() {}

template <>
void InInit<QvInit::resmgt>::finalize() {}

namespace {
InInit<QvInit::resmgt> gPackage;
}

} // namespace Qv
