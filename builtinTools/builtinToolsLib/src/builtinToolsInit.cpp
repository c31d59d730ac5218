// Package "builtinTools": declares its dependencies at load; its initialise step
// registers the package's tools with the host.
#include "builtinToolsInit.h"

#include "btBuildConstants.h"
#include "colorSourceInit.h"
#include "expressionInit.h"
#include "imageImportToolInit.h"
#include "inBuildInfo.h"
#include "inInit.h"
#include "inPlatformPackages.h"
#include "linkNodeCtrlInit.h"
#include "missingToolInit.h"
#include "motioInit.h"
#include "outputToolInit.h"
#include "renderedResultToolInit.h"
#include "valueSourceToolInit.h"

namespace Qv {

namespace {

class LibraryBuildInfo : public InBuildInfo {
public:
    std::string getProductName() const override { return BtBuildConstants::PRODUCT_NAME; }
    std::string getLibraryName() const override { return BtBuildConstants::LIBRARY_NAME; }
    std::string getRelease() const override { return BtBuildConstants::RELEASE; }
    std::string getVersionString() const override { return BtBuildConstants::VERSION_STRING; }
    // Read through the object, so a build that overrides the stage changes the suffix too.
    std::string getVersionSuffix() const override {
        return getStage() == BtBuildConstants::DEVELOPMENT_STAGE ? BtBuildConstants::DEVELOPMENT_SUFFIX : "";
    }
    int getMajorVersion() const override { return BtBuildConstants::MAJOR_VERSION; }
    int getMinorVersion() const override { return BtBuildConstants::MINOR_VERSION; }
    int getStage() const override { return BtBuildConstants::STAGE; }
    std::string getBuildNumber() const override { return BtBuildConstants::BUILD_NUMBER; }
    std::string getBuildDate() const override { return BtBuildConstants::BUILD_DATE; }
    std::string getBuildConfiguration() const override { return BtBuildConstants::BUILD_CONFIGURATION; }
};

} // namespace

template <>
InInit<QvInit::builtinTools>::InInit() : InPackageInit("builtinTools") {
    registerPackage();
    addDependency(InInit<QvInit::datamgt>::getType());
    addDependency(InInit<QvInit::render>::getType());
    addDependency(InInit<QvInit::media>::getType());
    addDependency(InInit<QvInit::framework>::getType());
    addDependency(InInit<QvInit::storage>::getType());
    addDependency(InInit<QvInit::internalAPI>::getType());
    addDependency(InInit<QvInit::primitives>::getType());
    addDependency(InInit<QvInit::resmgt>::getType());
    addDependency(InInit<QvInit::pluginAPI>::getType());
    addDependency(InInit<QvInit::base>::getType());
    addDependency(InInit<QvInit::motio>::getType());
    addDependency(InInit<QvInit::missingTool>::getType());
    addDependency(InInit<QvInit::linkNodeCtrl>::getType());
    addDependency(InInit<QvInit::renderedResultTool>::getType());
    addDependency(InInit<QvInit::imageImportTool>::getType());
    addDependency(InInit<QvInit::expression>::getType());
    addDependency(InInit<QvInit::valueSourceTool>::getType());
    addDependency(InInit<QvInit::outputTool>::getType());
    addDependency(InInit<QvInit::colorSource>::getType());
}

template <>
void InInit<QvInit::builtinTools>::initialize() {
    // Last of all packages: the record tells the host every tool is registered.
    InBuildInfoUtil::registerInfo(std::make_unique<LibraryBuildInfo>());
}

template <>
void InInit<QvInit::builtinTools>::finalize() {}

namespace {
InInit<QvInit::builtinTools> gPackage;
}

} // namespace Qv
