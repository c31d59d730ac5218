// Package "imageImportTool": declares its dependencies at load; its initialise step
// registers the package's tools with the host.
#include "imageImportToolInit.h"

#include "btImageImportServices.h"
#include "btImageImportTool.h"
#include "btImageReaderTool.h"
#include "btImageSequence.h"
#include "btSequencePathBuilder.h"
#include "btUserSettingsObserver.h"
#include "imageImportServices.h"
#include "inInit.h"
#include "inPlatformPackages.h"
#include "lgGroups.h"
#include "msgFileGuard.h"
#include "omProject.h"
#include "omUtil.h"

namespace Qv {

namespace LgGroups {
LgMinorGroup* MinorLevelImageReader = nullptr;
}

template <>
InInit<QvInit::imageImportTool>::InInit() : InPackageInit("imageImportTool") {
    registerPackage();
    addDependency(InInit<QvInit::datamgt>::getType());
    addDependency(InInit<QvInit::framework>::getType());
    addDependency(InInit<QvInit::storage>::getType());
    addDependency(InInit<QvInit::render>::getType());
    addDependency(InInit<QvInit::media>::getType());
    addDependency(InInit<QvInit::pluginAPI>::getType());
    addDependency(InInit<QvInit::internalAPI>::getType());
    addDependency(InInit<QvInit::primitives>::getType());
    addDependency(InInit<QvInit::resmgt>::getType());
    addDependency(InInit<QvInit::base>::getType());
}

namespace {

// Footage under the user's project home is stored by the home's alias, so
// that compositions survive the home's move; read back against the home of
// the moment. Registered once per process, whatever the finalise steps.
void registerProjectHomeAlias() {
    static bool registered = false;
    if (registered)
        return;
    registered = true;
    std::string const alias = std::string(OmUtil::getProjectHomeAlias()) + "/";
    std::string const home = OmProject::getCurrentProjectHomeFolderPath().toString();
    if (!home.empty())
        BtImageSequence::getLocationSubstituter().addPattern(home + "/",
                                                             [alias](std::string& text) { text = alias; });
    BtImageSequence::getLocationExpander().addPattern(alias, [](std::string& text) {
        text = OmProject::getCurrentProjectHomeFolderPath().toString() + "/";
    });
}

} // namespace

template <>
void InInit<QvInit::imageImportTool>::initialize() {
    QV_CREATE_MINOR_GROUP("BuiltinTools", ImageReader);
    MsgFileGuard catalogue("imageImport.msg");
    BtSequencePathBuilder::initialize();
    BtImageSequence::initialize();
    BtImageReaderNode::UserSettingsObserver::start();
    ImageImportServices::subscribeMessages();
    registerProjectHomeAlias();
    BtImageImportServices::initialize();
    BtImageReaderTool::registerTool();
    BtImageImportTool::registerTool();
}

template <>
void InInit<QvInit::imageImportTool>::finalize() {
    BtImageImportServices::finalize();
    BtImageReaderNode::UserSettingsObserver::stop();
    BtImageSequence::finalize();
    BtSequencePathBuilder::finalize();
    QV_DELETE_MINOR_GROUP(ImageReader);
}

namespace {
InInit<QvInit::imageImportTool> gPackage;
}

} // namespace Qv
