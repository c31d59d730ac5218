// Package "colorSource": declares its dependencies at load; its initialise step
// registers the package's tools with the host.
#include "colorSourceInit.h"

#include "btColorSourceTool.h"
#include "inInit.h"
#include "inPlatformPackages.h"

namespace Qv {

template <>
InInit<QvInit::colorSource>::InInit() : InPackageInit("colorSource") {
    registerPackage();
    addDependency(InInit<QvInit::datamgt>::getType());
    addDependency(InInit<QvInit::internalAPI>::getType());
    addDependency(InInit<QvInit::primitives>::getType());
    addDependency(InInit<QvInit::resmgt>::getType());
    addDependency(InInit<QvInit::pluginAPI>::getType());
    addDependency(InInit<QvInit::base>::getType());
}

template <>
void InInit<QvInit::colorSource>::initialize() {
    BtColorSourceTool::registerTool();
}

template <>
void InInit<QvInit::colorSource>::finalize() {}

namespace {
InInit<QvInit::colorSource> gPackage;
}

} // namespace Qv
