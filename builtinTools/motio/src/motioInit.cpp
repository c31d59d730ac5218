// Package "motio": declares its dependencies at load; its initialise step
// registers the package's tools with the host.
#include "motioInit.h"

#include "btBwdWarpTool.h"
#include "btFlowLKTool.h"
#include "btFwdWarpTool.h"
#include "btMotioTool.h"
#include "btPMCoefsTool.h"
#include "btPMFilterTool.h"
#include "btTimeDerivTool.h"
#include "btUpscaleTool.h"
#include "btVectorIncTool.h"
#include "inInit.h"
#include "inPlatformPackages.h"

namespace Qv {

template <>
InInit<QvInit::motio>::InInit() : InPackageInit("motio") {
    registerPackage();
    addDependency(InInit<QvInit::datamgt>::getType());
    addDependency(InInit<QvInit::storage>::getType());
    addDependency(InInit<QvInit::internalAPI>::getType());
    addDependency(InInit<QvInit::primitives>::getType());
    addDependency(InInit<QvInit::resmgt>::getType());
    addDependency(InInit<QvInit::pluginAPI>::getType());
    addDependency(InInit<QvInit::base>::getType());
}

template <>
void InInit<QvInit::motio>::initialize() {
    // The inner tools of the motion analysis, for developing and checking its chain.
    BtTimeDerivTool::registerTool();
    BtFlowLKTool::registerTool();
    BtFwdWarpTool::registerTool();
    BtBwdWarpTool::registerTool();
    BtPMCoefsTool::registerTool();
    BtPMFilterTool::registerTool();
    BtUpscaleTool::registerTool();
    BtVectorIncTool::registerTool();
    // The optical-flow tool users place in a composition.
    BtMotioTool::registerTool();
}

template <>
void InInit<QvInit::motio>::finalize() {}

namespace {
InInit<QvInit::motio> gPackage;
}

} // namespace Qv
