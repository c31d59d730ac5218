// The platform package "datamgt": project store.
#include "inInit.h"
#include "inPlatformPackages.h"

namespace Qv {

template <>
InInit<QvInit::datamgt>::InInit() : InPackageInit("datamgt") {
    registerPackage();
    addDependency(InInit<QvInit::pluginAPI>::getType());
    addDependency(InInit<QvInit::framework>::getType());
}

template <>
void InInit<QvInit::datamgt>::initialize() {}

template <>
void InInit<QvInit::datamgt>::finalize() {}

namespace {
InInit<QvInit::datamgt> gPackage;
}

} // namespace Qv
