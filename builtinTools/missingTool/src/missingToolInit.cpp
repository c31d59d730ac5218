// Package "missingTool": declares its dependencies at load; its initialise step
// registers the placeholders of nodes whose tools this installation lacks.
#include "missingToolInit.h"

#include "btMissingSuperToolNodeController.h"
#include "btMissingToolNodeController.h"
#include "inInit.h"
#include "inPlatformPackages.h"
#include "msgFileGuard.h"
#include "omGraphUtil.h"

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
    BtMissingToolNodeController::subscribeMessages();
    BtMissingToolNodeController::initializePolicies();
    OmGraphUtil::registerMissingToolNodeCtrlFactory(&BtMissingToolNodeController::createMissing);
    OmGraphUtil::registerBrokenToolNodeCtrlFactory(&BtMissingToolNodeController::createBroken);
    BtMissingSuperToolNodeController::subscribeMessages();
    OmGraphUtil::registerMissingSuperToolNodeCtrlFactory(&BtMissingSuperToolNodeController::create);
}

template <>
void InInit<QvInit::missingTool>::finalize() {
    BtMissingToolNodeController::finalizePolicies();
}

namespace {
InInit<QvInit::missingTool> gPackage;
}

} // namespace Qv
