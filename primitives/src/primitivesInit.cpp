// The platform package "primitives": image primitives.
#include "inInit.h"
#include "inPlatformPackages.h"

namespace Qv {

template <>
InInit<QvInit::primitives>::InInit() : InPackageInit("primitives") {
    registerPackage();
    addDependency(InInit<QvInit::base>::getType());
}

template <>
void InInit<QvInit::primitives>::initialize() {}

template <>
void InInit<QvInit::primitives>::finalize() {}

namespace {
InInit<QvInit::primitives> gPackage;
}

} // namespace Qv
