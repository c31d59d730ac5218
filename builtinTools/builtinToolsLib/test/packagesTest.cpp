// The library's packages as the host sees them once the library is loaded.
#include "assertions.h"
#include "inBuildInfo.h"
#include "inInit.h"
#include "inInitMgr.h"
#include "valueSourceToolInit.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <set>

using namespace Qv;

namespace {

class LibraryPackages : public ::testing::Test {
protected:
    static void SetUpTestSuite() { InInitMgr::getInstance().initializeAll(); }
    static void TearDownTestSuite() { InInitMgr::getInstance().finalizeAll(); }
};

std::vector<std::string> names(std::vector<InPackageInit*> const& packages) {
    std::vector<std::string> result;
    for (auto const* package : packages)
        result.push_back(package->getName());
    return result;
}

} // namespace

TEST_F(LibraryPackages, DeclaredDependenciesMatchTheLibraryTable) {
    std::map<std::string, std::string> const expected = {
        {"builtinTools",
         "datamgt render media framework storage internalAPI primitives resmgt pluginAPI base motio "
         "missingTool linkNodeCtrl renderedResultTool imageImportTool expression valueSourceTool "
         "outputTool colorSource"},
        {"motio", "datamgt storage internalAPI primitives resmgt pluginAPI base"},
        {"missingTool", "datamgt media framework storage internalAPI resmgt pluginAPI base"},
        {"linkNodeCtrl", "datamgt internalAPI pluginAPI resmgt base"},
        {"renderedResultTool", "imageImportTool datamgt pluginAPI internalAPI media resmgt base"},
        {"imageImportTool",
         "datamgt framework storage render media pluginAPI internalAPI primitives resmgt base"},
        {"expression", "datamgt pluginAPI internalAPI resmgt base"},
        {"valueSourceTool", "datamgt primitives internalAPI pluginAPI resmgt base"},
        {"outputTool",
         "renderedResultTool imageImportTool media datamgt primitives internalAPI pluginAPI resmgt base"},
        {"colorSource", "datamgt internalAPI primitives resmgt pluginAPI base"},
    };
    InInitMgr& manager = InInitMgr::getInstance();
    for (InPackageInit const* package : manager.getPackages()) {
        auto found = expected.find(package->getName());
        if (found == expected.end())
            continue;
        std::string declared;
        for (auto dependency : package->getDependencies())
            declared += (declared.empty() ? "" : " ") + manager.getPackageName(dependency);
        EXPECT_EQ(declared, found->second) << package->getName();
    }
    std::set<std::string> const all = [&] {
        auto list = names(manager.getPackages());
        return std::set<std::string>(list.begin(), list.end());
    }();
    for (auto const& [name, dependencies] : expected)
        EXPECT_TRUE(all.count(name)) << name << " is not registered";
}

TEST_F(LibraryPackages, EveryPackageInitialisesAfterItsDependenciesAndTheRootLast) {
    InInitMgr& manager = InInitMgr::getInstance();
    auto order = manager.getInitializationOrder();
    ASSERT_FALSE(order.empty());
    EXPECT_EQ(order.back()->getName(), "builtinTools");
    std::map<std::string, size_t> position;
    for (size_t i = 0; i < order.size(); ++i)
        position[order[i]->getName()] = i;
    for (InPackageInit const* package : order)
        for (auto dependency : package->getDependencies())
            EXPECT_LT(position.at(manager.getPackageName(dependency)), position.at(package->getName()))
                << manager.getPackageName(dependency) << " must come before " << package->getName();
    for (InPackageInit const* package : order)
        EXPECT_TRUE(package->isInitialized()) << package->getName();
}

TEST_F(LibraryPackages, BuildRecordIsPublishedOnce) {
    auto infos = InBuildInfoUtil::getRegisteredInfos();
    auto ours = std::count_if(infos.begin(), infos.end(), [](InBuildInfo const* info) {
        return info->getLibraryName() == "libQvbuiltinTools";
    });
    ASSERT_EQ(ours, 1);
    InBuildInfo const& info = **std::find_if(infos.begin(), infos.end(), [](InBuildInfo const* i) {
        return i->getLibraryName() == "libQvbuiltinTools";
    });
    EXPECT_EQ(info.getProductName(), "Ostrand Brumo Library");
    EXPECT_EQ(info.getStage(), 42);
    // Stage 42 is not the development stage: no suffix.
    EXPECT_EQ(info.getVersionSuffix(), "");
    EXPECT_EQ(info.getVersionString() + info.getVersionSuffix(), "8.0");
}

TEST_F(LibraryPackages, SecondInitialiseOfAPackageReportsItsGroupAssertion) {
    std::vector<std::string> reported;
    auto previous = Assertions::setReportHandler(
        [&](char const*, int, char const* expression) { reported.push_back(expression); });
    InPackageInit* package = InInitMgr::getInstance().findPackage(InInit<QvInit::valueSourceTool>::getType());
    ASSERT_NE(package, nullptr);
    package->initialize(); // a host error: the group already exists
    package->finalize();
    package->finalize();   // and now it is already gone
    package->initialize(); // leave it live for the suite's own finalise
    Assertions::setReportHandler(previous);
    EXPECT_EQ(reported, (std::vector<std::string>{"LgGroups::QV_XGLUE( MinorLevel, ValueSourceTool ) == 0",
                                                  "LgGroups::QV_XGLUE( MinorLevel, ValueSourceTool ) != 0"}));
}
