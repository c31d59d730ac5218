// Package "valueSourceTool": declares its dependencies at load; its initialise step
// registers the package's tools with the host.
#include "valueSourceToolInit.h"

#include "btValueSourceTool.h"
#include "inInit.h"
#include "inPlatformPackages.h"
#include "lgGroups.h"
#include "piToolRegistry.h"

namespace Qv {

namespace LgGroups {
LgMinorGroup* MinorLevelValueSourceTool = nullptr;
}

template <>
InInit<QvInit::valueSourceTool>::InInit() : InPackageInit("valueSourceTool") {
    registerPackage();
    addDependency(InInit<QvInit::datamgt>::getType());
    addDependency(InInit<QvInit::primitives>::getType());
    addDependency(InInit<QvInit::internalAPI>::getType());
    addDependency(InInit<QvInit::pluginAPI>::getType());
    addDependency(InInit<QvInit::resmgt>::getType());
    addDependency(InInit<QvInit::base>::getType());
}

template <>
void InInit<QvInit::valueSourceTool>::initialize() {
    QV_CREATE_MINOR_GROUP("BuiltinTools", ValueSourceTool);
    PiToolRegistry::getInstance().registerTool(std::make_unique<BtValueSourceTool>());
}

template <>
void InInit<QvInit::valueSourceTool>::finalize() {
    QV_DELETE_MINOR_GROUP(ValueSourceTool);
}

namespace {
InInit<QvInit::valueSourceTool> gPackage;
}

} // namespace Qv
