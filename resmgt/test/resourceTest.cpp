// Finding the resources folder and expanding path aliases.
#include "resmgtTestFiles.h"
#include "rsResources.h"

#include <gtest/gtest.h>

namespace Qv {
namespace {

namespace fs = std::filesystem;

TEST(RsResourcesLocate, PrefersEnvironmentThenExecutableThenSourceTree) {
    TestFiles::TempDir dirs;
    fs::create_directories(dirs.getPath() / "env");
    fs::create_directories(dirs.getPath() / "exe");
    fs::create_directories(dirs.getPath() / "src");
    auto const env = (dirs.getPath() / "env").string();
    auto const exe = dirs.getPath() / "exe";
    auto const src = dirs.getPath() / "src";
    auto const missing = dirs.getPath() / "missing";

    struct Case {
        char const* name;
        std::optional<std::string> fromEnvironment;
        fs::path besideExecutable;
        fs::path fromSourceTree;
        fs::path expected;
    };
    Case const cases[] = {
        {"environment wins over everything", env, exe, src, env},
        {"executable's share folder next", std::nullopt, exe, src, exe},
        {"source tree last", std::nullopt, missing, src, src},
        {"no executable path known", std::nullopt, fs::path(), src, src},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(RsResources::locate(c.fromEnvironment, c.besideExecutable, c.fromSourceTree), c.expected);
    }
}

TEST(RsResourcesLocate, FailsClearlyWhenNothingIsThere) {
    TestFiles::TempDir dirs;
    auto const missing = (dirs.getPath() / "missing").string();
    try {
        // A folder given by the environment that does not exist is an error, not a fallback.
        RsResources::locate(missing, dirs.getPath(), dirs.getPath());
        ADD_FAILURE() << "environment value ignored";
    } catch (RsEx::ExResourcesNotFound const& ex) {
        EXPECT_NE(ex.getReason().find("QV_RESOURCES=" + missing), std::string::npos) << ex.getReason();
    }
    try {
        RsResources::locate(std::nullopt, missing + "/a", missing + "/b");
        ADD_FAILURE() << "found a folder";
    } catch (RsEx::ExResourcesNotFound const& ex) {
        EXPECT_NE(ex.getReason().find(missing + "/a"), std::string::npos) << ex.getReason();
        EXPECT_NE(ex.getReason().find(missing + "/b"), std::string::npos) << ex.getReason();
    }
}

TEST(RsResources, EnvironmentVariableSelectsTheFolder) {
    TestFiles::TempDir dirs;
    TestFiles::EnvGuard env("QV_RESOURCES", dirs.getPath().string());
    EXPECT_EQ(RsResources::getResourcesDir(), dirs.getPath());
}

TEST(RsResources, FindsAFolderWithoutTheEnvironmentVariable) {
    TestFiles::EnvGuard env("QV_RESOURCES", std::nullopt);
    // In a build tree the source tree's folder is the one found.
    EXPECT_TRUE(fs::exists(RsResources::getResourcesDir() / "msg" / "expressions.msg"));
}

TEST(RsResourcesExpandAliases, ReplacesKnownAliasesAndKeepsOtherText) {
    TestFiles::TempDir dirs;
    TestFiles::EnvGuard env("QV_RESOURCES", dirs.getPath().string());
    auto const res = dirs.getPath().string();
    struct Case {
        std::string path;
        std::string expected;
    };
    Case const cases[] = {
        {"<ToolUiDir>/missingToolSchematicNodeH.xml", res + "/ui/missingToolSchematicNodeH.xml"},
        {"<MsgDir>/expressions.msg", res + "/msg/expressions.msg"},
        {"<MsgDir>", res + "/msg"},
        {"<MsgDir>/a:<ToolUiDir>/b", res + "/msg/a:" + res + "/ui/b"},
        {"/plain/path.xml", "/plain/path.xml"},
        {"", ""},
        {"a<b", "a<b"},
        {"<>x", "<>x"},
        {"<not an alias>", "<not an alias>"},
        {"x<<MsgDir>", "x<" + res + "/msg"},
        {"<MsgDir", "<MsgDir"},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.path);
        EXPECT_EQ(RsResources::expandAliases(c.path), c.expected);
    }
}

TEST(RsResourcesExpandAliases, UnknownAliasNamesItAndThePath) {
    for (std::string path : {"<ToolDir>/a.xml", "x/<msgdir>/y"}) {
        SCOPED_TRACE(path);
        try {
            RsResources::expandAliases(path);
            ADD_FAILURE() << "expanded";
        } catch (RsEx::ExUnknownAlias const& ex) {
            auto const alias = path.substr(path.find('<'), path.find('>') - path.find('<') + 1);
            EXPECT_NE(ex.getReason().find(alias), std::string::npos) << ex.getReason();
            EXPECT_NE(ex.getReason().find(path), std::string::npos) << ex.getReason();
        }
    }
}

} // namespace
} // namespace Qv
