// Finding the resources folder and expanding path aliases.
#include "../../base/test/baseTestHelpers.h"
#include "rsResources.h"

#include <cstdlib>
#include <optional>

namespace Qv {
namespace {

namespace fs = std::filesystem;
using namespace TestHelpers;
using RsResourcesTest = TempDirTest;

TEST_F(RsResourcesTest, LocatePrefersEnvironmentThenExecutableThenSourceTree) {
    std::string const env = (_root / "env").string();
    fs::path const exe = _root / "exe", src = _root / "src", missing = _root / "missing";
    for (fs::path const& dir : {fs::path(env), exe, src})
        fs::create_directories(dir);
    struct Case {
        char const* name;
        std::optional<std::string> fromEnvironment;
        fs::path besideExecutable, fromSourceTree, expected;
    } const cases[] = {
        {"environment wins over everything", env, exe, src, env},
        {"executable's share folder next", std::nullopt, exe, src, exe},
        {"source tree last", std::nullopt, missing, src, src},
        {"no executable path known", std::nullopt, fs::path(), src, src},
    };
    for (auto const& c : cases)
        EXPECT_EQ(RsResources::locate(c.fromEnvironment, c.besideExecutable, c.fromSourceTree), c.expected)
            << c.name;
    // A folder named by the environment that does not exist is an error, not a fallback.
    EXPECT_TRUE(throwsWith<RsEx::ExResourcesNotFound>(
        [&] { RsResources::locate(missing.string(), exe, src); }, "QV_RESOURCES=" + missing.string()));
    EXPECT_TRUE(throwsWith<RsEx::ExResourcesNotFound>(
        [&] { RsResources::locate(std::nullopt, missing / "a", missing / "b"); }, (missing / "a").string(),
        (missing / "b").string()));
}

TEST_F(RsResourcesTest, EnvironmentVariableSelectsTheFolderElseTheSourceTreeOneIsFound) {
    char const* const old = std::getenv("QV_RESOURCES");
    std::string const previous = old ? old : "";
    ::setenv("QV_RESOURCES", _root.c_str(), 1);
    EXPECT_EQ(RsResources::getResourcesDir(), _root);
    ::unsetenv("QV_RESOURCES");
    EXPECT_TRUE(fs::exists(RsResources::getResourcesDir() / "msg" / "expressions.msg"));
    ::setenv("QV_RESOURCES", previous.c_str(), 1); // an empty value counts as none
}

TEST_F(RsResourcesTest, ExpandAliasesReplacesKnownAliasesAndNamesUnknownOnes) {
    std::string const res = RsResources::getResourcesDir().string();
    struct Case {
        std::string path, expected;
    } const cases[] = {
        {"<ToolUiDir>/missingToolSchematicNodeH.xml", res + "/ui/missingToolSchematicNodeH.xml"},
        {"<MsgDir>/a:<ToolUiDir>/b", res + "/msg/a:" + res + "/ui/b"},
        {"", ""},
        {"a<b", "a<b"},
        {"<not an alias>", "<not an alias>"},
        {"x<<MsgDir>", "x<" + res + "/msg"},
        {"<MsgDir", "<MsgDir"},
    };
    for (auto const& c : cases)
        EXPECT_EQ(RsResources::expandAliases(c.path), c.expected) << c.path;
    for (std::string path : {"<ToolDir>/a.xml", "x/<msgdir>/y"}) {
        std::string const alias = path.substr(path.find('<'), path.find('>') - path.find('<') + 1);
        EXPECT_TRUE(throwsWith<RsEx::ExUnknownAlias>([&] { RsResources::expandAliases(path); }, alias, path));
    }
}

} // namespace
} // namespace Qv
