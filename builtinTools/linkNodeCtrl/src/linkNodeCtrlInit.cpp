// Package "linkNodeCtrl": declares its dependencies at load; its initialise step
// registers the package's tools with the host.
#include "linkNodeCtrlInit.h"

#include "inInit.h"
#include "inPlatformPackages.h"

namespace Qv {

template <>
InInit<QvInit::linkNodeCtrl>::InInit() : InPackageInit("linkNodeCtrl") {
    registerPackage();
    addDependency(InInit<QvInit::datamgt>::getType());
    addDependency(InInit<QvInit::internalAPI>::getType());
    addDependency(InInit<QvInit::pluginAPI>::getType());
    addDependency(InInit<QvInit::resmgt>::getType());
    addDependency(InInit<QvInit::base>::getType());
}

template <>
void InInit<QvInit::linkNodeCtrl>::initialize() {}

template <>
void InInit<QvInit::linkNodeCtrl>::finalize() {}

namespace {
InInit<QvInit::linkNodeCtrl> gPackage;
}

} // namespace Qv
