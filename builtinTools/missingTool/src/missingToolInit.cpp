// Package "missingTool": declares its dependencies at load; its initialise step
// registers the package's tools with the host.
#include "missingToolInit.h"

#include "inInit.h"
#include "inPlatformPackages.h"
#include "msgFileGuard.h"

namespace Qv {

template <>
InInit<QvInit::missingTool>::InInit() : InPackageInit("missingTool") {
    registerPackage();
    addDependency(InInit<QvInit::datamgt>::getType());
    addDependency(InInit<QvInit::media>::getType());
    addDependency(InInit<QvInit::framework>::getType());
    addDependency(InInit<QvInit::storage>::getType());
    addDependency(InInit<QvInit::internalAPI>::getType());
    addDependency(InInit<QvInit::resmgt>::getType());
    addDependency(InInit<QvInit::pluginAPI>::getType());
    addDependency(InInit<QvInit::base>::getType());
}

template <>
void InInit<QvInit::missingTool>::initialize() {
    MsgFileGuard catalogue("missingTool.msg");
}

template <>
void InInit<QvInit::missingTool>::finalize() {}

namespace {
InInit<QvInit::missingTool> gPackage;
}

} // namespace Qv
