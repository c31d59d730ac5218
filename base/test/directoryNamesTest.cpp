// OsDirectory::visitChildrenNames: the names of one kind of child that a
// filter matches, read once from the system.
#include "baseTestHelpers.h"
#include "osDirectory.h"
#include "osFileEx.h"
#include "osWildcardFilter.h"

#include <algorithm>
#include <filesystem>

using namespace Qv;
using namespace Qv::TestHelpers;

namespace {

class DirectoryNames : public TempDirTest {
protected:
    std::vector<std::string> names(OsDirectory::PathTypes types, std::string const& pattern) const {
        std::vector<std::string> seen;
        OsDirectory(path("")).visitChildrenNames(types, OsWildcardFilter(pattern),
                                                 [&](std::string_view name) { seen.emplace_back(name); });
        std::sort(seen.begin(), seen.end());
        return seen;
    }
};

TEST_F(DirectoryNames, AreThoseOfTheKindAskedThatTheFilterMatches) {
    writeFile("p.1.exr", "");
    writeFile("p.2.exr", "");
    writeFile("q.3.exr", "");
    std::filesystem::create_directory(_root / "p.4.exr");
    std::filesystem::create_symlink(_root / "p.1.exr", _root / "p.5.exr");
    std::filesystem::create_symlink(_root / "gone", _root / "p.6.exr");
    using V = std::vector<std::string>;
    EXPECT_EQ(names(OsDirectory::FILES, "p.*.exr"), (V{"p.1.exr", "p.2.exr", "p.5.exr"}));
    EXPECT_EQ(names(OsDirectory::DIRECTORIES, "*"), (V{"p.4.exr"}));
    EXPECT_EQ(names(OsDirectory::FILES_AND_DIRECTORIES, "p.?.exr"),
              (V{"p.1.exr", "p.2.exr", "p.4.exr", "p.5.exr"}));
    EXPECT_EQ(names(OsDirectory::FILES, "none*"), V{});
}

TEST_F(DirectoryNames, OfWhatIsNoDirectoryAreAnInvalidPath) {
    writeFile("file", "");
    for (char const* name : {"file", "missing"})
        EXPECT_THROW(
            OsDirectory(path(name))
                .visitChildrenNames(OsDirectory::FILES, OsWildcardFilter("*"), [](std::string_view) {}),
            OsFileEx::ExInvalidPath)
            << name;
}

} // namespace
