// The platform package "storage": image caches.
#include "inInit.h"
#include "inPlatformPackages.h"

namespace Qv {

template <>
InInit<QvInit::storage>::InInit() : InPackageInit("storage") {
    registerPackage();
    addDependency(InInit<QvInit::internalAPI>::getType());
}

template <>
void InInit<QvInit::storage>::initialize() {}

template <>
void InInit<QvInit::storage>::finalize() {}

namespace {
InInit<QvInit::storage> gPackage;
}

} // namespace Qv
