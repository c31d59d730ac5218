// Package "expression": declares its dependencies at load; its initialise step
// registers the package's tools with the host.
#include "expressionInit.h"

#include "btExpFunctionRegistry.h"
#include "btExpNodeNameObserver.h"
#include "btExpParser.h"
#include "btExpressionServices.h"
#include "btExpressionTool.h"
#include "inInit.h"
#include "inPlatformPackages.h"
#include "msgFileGuard.h"

#include <memory>

namespace Qv {

template <>
InInit<QvInit::expression>::InInit() : InPackageInit("expression") {
    registerPackage();
    addDependency(InInit<QvInit::datamgt>::getType());
    addDependency(InInit<QvInit::pluginAPI>::getType());
    addDependency(InInit<QvInit::internalAPI>::getType());
    addDependency(InInit<QvInit::resmgt>::getType());
    addDependency(InInit<QvInit::base>::getType());
}

template <>
void InInit<QvInit::expression>::initialize() {
    MsgFileGuard catalogue("expressions.msg");
    BtExpParser::initialize();
    BtExpressionTool::registerTools();
    // A singleton has one life per process: a package started again after a
    // stop (test programs do so) goes on without the list of names.
    if (BtExpFunctionRegistry::getState() == InSingletonCore::NOT_CREATED) {
        BtExpFunctionRegistry::initialize(std::make_unique<BtExpFunctionRegistry>());
        BtExpFunctionRegistry::getInstance().registerLanguageFunctions();
    }
    BtExpNodeNameObserver::initialize();
    PiExpressionServices::initialize(std::make_unique<BtExpressionServices>());
}

template <>
void InInit<QvInit::expression>::finalize() {
    PiExpressionServices::initialize(nullptr);
    BtExpNodeNameObserver::finalize();
    if (BtExpFunctionRegistry::isInitialized())
        BtExpFunctionRegistry::finalize();
    BtExpParser::finalize();
}

namespace {
InInit<QvInit::expression> gPackage;
}

} // namespace Qv
