// Package "renderedResultTool": declares its dependencies at load; its initialise step
// registers the package's tools with the host.
#include "renderedResultToolInit.h"

#include "imageImportToolInit.h"
#include "inInit.h"
#include "inPlatformPackages.h"
#include "lgGroups.h"
#include "msgFileGuard.h"

namespace Qv {

namespace LgGroups {
LgMinorGroup* MinorLevelRenderedResultTool = nullptr;
}

template <>
InInit<QvInit::renderedResultTool>::InInit() : InPackageInit("renderedResultTool") {
    registerPackage();
    addDependency(InInit<QvInit::imageImportTool>::getType());
    addDependency(InInit<QvInit::datamgt>::getType());
    addDependency(InInit<QvInit::pluginAPI>::getType());
    addDependency(InInit<QvInit::internalAPI>::getType());
    addDependency(InInit<QvInit::media>::getType());
    addDependency(InInit<QvInit::resmgt>::getType());
    addDependency(InInit<QvInit::base>::getType());
}

template <>
void InInit<QvInit::renderedResultTool>::initialize() {
    QV_CREATE_MINOR_GROUP("BuiltinTools", RenderedResultTool);
    MsgFileGuard catalogue("renderParams.msg");
}

template <>
void InInit<QvInit::renderedResultTool>::finalize() {
    QV_DELETE_MINOR_GROUP(RenderedResultTool);
}

namespace {
InInit<QvInit::renderedResultTool> gPackage;
}

} // namespace Qv
