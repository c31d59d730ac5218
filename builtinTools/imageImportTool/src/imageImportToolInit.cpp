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

template <>
void InInit<QvInit::imageImportTool>::initialize() {
    QV_CREATE_MINOR_GROUP("BuiltinTools", ImageReader);
    MsgFileGuard catalogue("imageImport.msg");
    BtSequencePathBuilder::initialize();
    BtImageSequence::initialize();
    BtImageReaderNode::UserSettingsObserver::start();
    ImageImportServices::subscribeMessages();
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
