// The platform package "render": render buffers.
#include "inInit.h"
#include "inPlatformPackages.h"

namespace Qv {

template <>
InInit<QvInit::render>::InInit() : InPackageInit("render") {
    registerPackage();
    addDependency(InInit<QvInit::internalAPI>::getType());
    addDependency(InInit<QvInit::primitives>::getType());
}

template <>
void InInit<QvInit::render>::initialize() {}

template <>
void InInit<QvInit::render>::finalize() {}

namespace {
InInit<QvInit::render> gPackage;
}

} // namespace Qv
