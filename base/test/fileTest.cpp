#include "baseTestHelpers.h"
#include "osDirectory.h"
#include "osFile.h"
#include "osFileEx.h"
#include "osFileUtils.h"
#include "osWildcardFilter.h"

#include <algorithm>
#include <set>
#include <tuple>
#include <unistd.h>

using namespace Qv;
using namespace Qv::TestHelpers;
namespace fs = std::filesystem;

namespace {

using OsFileTest = TempDirTest;
using Names = std::vector<std::string>;

Names entries(fs::path const& dir) {
    Names names;
    for (auto const& entry : fs::directory_iterator(dir))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

TEST_F(OsFileTest, ReadsWholeTextAndNamesTheFileOnFailure) {
    std::string content("line 1\n\0binary\r\n", 16);
    writeFile("a.txt", content);
    fs::create_directory(_root / "dir");
    EXPECT_EQ(OsFile(path("a.txt")).readText(), content);
    EXPECT_EQ(OsFile(path("a.txt")).getSize(), 16u);
    EXPECT_FALSE(OsFile(path("dir")).exists());
    EXPECT_TRUE(
        throwsWith<OsFileEx::ExFileNotFound>([&] { OsFile(path("nope.txt")).readText(); }, "nope.txt"));
    EXPECT_TRUE(throwsWith<OsFileEx::ExFileNotFound>([&] { OsFile(path("nope")).getSize(); }, "nope"));
    EXPECT_TRUE(throwsWith<OsFileEx::ExInvalidPath>([&] { OsFile(path("dir")).readText(); }, "dir"));
}

TEST_F(OsFileTest, RemovesAndRenamesFilesButNotDirectories) {
    writeFile("tmp", "new");
    writeFile("final", "old");
    fs::create_directory(_root / "dir");
    OsFile(path("tmp")).renameTo(path("final"));
    EXPECT_EQ(OsFile(path("final")).readText(), "new");
    EXPECT_TRUE(
        throwsWith<OsFileEx::ExFileNotFound>([&] { OsFile(path("tmp")).renameTo(path("x")); }, "tmp"));
    EXPECT_THROW(OsFile(path("final")).renameTo(path("no/such/dir/x")), OsFileEx::ExIOError);
    EXPECT_TRUE(OsFile(path("final")).remove());
    EXPECT_FALSE(OsFile(path("final")).remove()); // already gone: not an error
    EXPECT_THROW(OsFile(path("dir")).remove(), OsFileEx::ExInvalidPath);
    EXPECT_EQ(entries(_root), Names{"dir"});
}

TEST_F(OsFileTest, AtomicWriteReplacesTheFileOrKeepsTheOldOneOnFailure) {
    OsFile file(path("a.txt"));
    file.writeAtomically(std::string(1 << 20, 'z'));
    EXPECT_EQ(file.getSize(), 1u << 20);
    file.writeAtomically("old");
    fs::create_directories(_root / "taken" / "inside"); // a directory under the target's name
    EXPECT_TRUE(
        throwsWith<OsFileEx::ExInvalidPath>([&] { OsFile(path("taken")).writeAtomically("x"); }, "taken"));
    EXPECT_THROW(OsFile(path("absent/a.txt")).writeAtomically("x"), OsFileEx::ExFileError);
    EXPECT_THROW(OsFile(OsFilePath("")).writeAtomically("x"), OsFileEx::ExInvalidPath);
    EXPECT_EQ(file.readText(), "old");
    EXPECT_EQ(entries(_root), (Names{"a.txt", "taken"})) << "a temporary file was left";
    if (geteuid() == 0)
        GTEST_SKIP() << "the permission cases need a user that permissions bind";
    // A read-only file, and a file in a directory that refuses new entries.
    fs::permissions(_root / "a.txt", fs::perms::owner_read);
    EXPECT_THROW(OsFile(path("a.txt")).writeAtomically("new"), OsFileEx::ExIOError);
    fs::permissions(_root / "a.txt", fs::perms::owner_all);
    fs::permissions(_root, fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_TRUE(
        throwsWith<OsFileEx::ExIOError>([&] { OsFile(path("a.txt")).writeAtomically("new"); }, "a.txt"));
    fs::permissions(_root, fs::perms::owner_all);
    EXPECT_EQ(OsFile(path("a.txt")).readText(), "old");
    EXPECT_EQ(entries(_root), (Names{"a.txt", "taken"}));
}

TEST_F(OsFileTest, UniqueFileNamesAreFreshAndKeepPrefixAndExtension) {
    std::set<std::string> seen;
    for (int i = 0; i < 100; ++i) {
        OsFilePath name = OsFileUtils::createUniqueFileName(path(""), "render_", ".exr");
        EXPECT_EQ(name.getBaseName(true).rfind("render_", 0), 0u) << name.toString();
        EXPECT_EQ(name.getExtension(), "exr");
        EXPECT_TRUE(seen.insert(name.toString()).second) << name.toString();
    }
    for (auto [dir, prefix, extension] :
         {std::tuple{"absent", "t", "exr"}, {"", "a/b", "exr"}, {"", "t", "e/x"}})
        EXPECT_THROW(OsFileUtils::createUniqueFileName(path(dir), prefix, extension),
                     OsFileEx::ExInvalidPath);
}

TEST_F(OsFileTest, DirectoriesAreCreatedRecursivelyAndListedSortedByName) {
    for (char const* name : {"p10.tif", "p9.tif", "P1.tif", "p08.tif", ".p7.tif"})
        writeFile(name, "x");
    OsDirectory deep(path("p5.tif/b"));
    EXPECT_EQ(deep.getType(), OsDirectory::NOT_FOUND);
    EXPECT_TRUE(deep.create());
    EXPECT_EQ(deep.getType(), OsDirectory::DIRECTORY);
    EXPECT_FALSE(deep.create());
    EXPECT_THROW(OsDirectory(path("p9.tif")).create(), OsFileEx::ExInvalidPath);
    EXPECT_THROW(OsDirectory(path("p9.tif/sub")).create(), OsFileEx::ExInvalidPath);

    auto names = [](std::vector<OsFilePath> const& paths) {
        Names result;
        for (OsFilePath const& p : paths)
            result.push_back(p.getBaseName(true));
        return result;
    };
    OsDirectory dir(path(""));
    EXPECT_EQ(names(dir.getChildrenPath(OsDirectory::FILES)),
              (Names{".p7.tif", "P1.tif", "p08.tif", "p10.tif", "p9.tif"}));
    EXPECT_EQ(names(dir.getChildrenPath(OsDirectory::DIRECTORIES)), Names{"p5.tif"});
    EXPECT_EQ(dir.getChildrenPath(OsDirectory::FILES_AND_DIRECTORIES).size(), 6u);
    EXPECT_EQ(names(dir.getChildrenPath(OsDirectory::FILES, OsWildcardFilter("p?.tif"))), Names{"p9.tif"});
    EXPECT_TRUE(throwsWith<OsFileEx::ExInvalidPath>(
        [&] { OsDirectory(path("absent")).getChildrenPath(OsDirectory::FILES); }, "absent"));
    EXPECT_THROW(OsDirectory(path("p9.tif")).getChildrenPath(OsDirectory::FILES), OsFileEx::ExInvalidPath);
}

} // namespace
