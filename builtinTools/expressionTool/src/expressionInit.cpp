// Package "expression": declares its dependencies at load; its initialise step
// registers the package's tools with the host.
#include "expressionInit.h"

#include "btExpFunctionRegistry.h"
#include "btExpParser.h"
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
    BtExpFunctionRegistry::initialize(std::make_unique<BtExpFunctionRegistry>());
    BtExpFunctionRegistry::getInstance().registerLanguageFunctions();
}

template <>
void InInit<QvInit::expression>::finalize() {
    BtExpFunctionRegistry::finalize();
    BtExpParser::finalize();
}

namespace {
InInit<QvInit::expression> gPackage;
}

} // namespace Qv
