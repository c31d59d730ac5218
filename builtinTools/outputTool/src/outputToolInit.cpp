// Package "outputTool": declares its dependencies at load; its initialise step
// registers the package's tools with the host.
#include "outputToolInit.h"

#include "imageImportToolInit.h"
#include "inInit.h"
#include "inPlatformPackages.h"
#include "lgGroups.h"
#include "msgFileGuard.h"
#include "renderedResultToolInit.h"

namespace Qv {

namespace LgGroups {
LgMinorGroup* MinorLevelOutputTool = nullptr;
}

template <>
InInit<QvInit::outputTool>::InInit() : InPackageInit("outputTool") {
    registerPackage();
    addDependency(InInit<QvInit::renderedResultTool>::getType());
    addDependency(InInit<QvInit::imageImportTool>::getType());
    addDependency(InInit<QvInit::media>::getType());
    addDependency(InInit<QvInit::datamgt>::getType());
    addDependency(InInit<QvInit::primitives>::getType());
    addDependency(InInit<QvInit::internalAPI>::getType());
    addDependency(InInit<QvInit::pluginAPI>::getType());
    addDependency(InInit<QvInit::resmgt>::getType());
    addDependency(InInit<QvInit::base>::getType());
}

template <>
void InInit<QvInit::outputTool>::initialize() {
    QV_CREATE_MINOR_GROUP("BuiltinTools", OutputTool);
    MsgFileGuard catalogue("outputController.msg");
}

template <>
void InInit<QvInit::outputTool>::finalize() {
    QV_DELETE_MINOR_GROUP(OutputTool);
}

namespace {
InInit<QvInit::outputTool> gPackage;
}

} // namespace Qv
