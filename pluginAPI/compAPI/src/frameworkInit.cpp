// The platform package "framework": undo framework.
#include "inInit.h"
#include "inPlatformPackages.h"

namespace Qv {

template <>
InInit<QvInit::framework>::InInit() : InPackageInit("framework") {
    registerPackage();
    addDependency(InInit<QvInit::pluginAPI>::getType());
}

template <>
void InInit<QvInit::framework>::initialize() {}

template <>
void InInit<QvInit::framework>::finalize() {}

namespace {
InInit<QvInit::framework> gPackage;
}

} // namespace Qv
