// The platform package "media": file formats.
#include "inInit.h"
#include "inPlatformPackages.h"

namespace Qv {

template <>
InInit<QvInit::media>::InInit() : InPackageInit("media") {
    registerPackage();
    addDependency(InInit<QvInit::primitives>::getType());
    addDependency(InInit<QvInit::resmgt>::getType());
}

template <>
void InInit<QvInit::media>::initialize() {}

template <>
void InInit<QvInit::media>::finalize() {}

namespace {
InInit<QvInit::media> gPackage;
}

} // namespace Qv
