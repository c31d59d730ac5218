#include "osDirectory.h"
#include "osFile.h"
#include "osFileEx.h"
#include "osFileUtils.h"
#include "osWildcardFilter.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <unistd.h>

using namespace Qv;
namespace fs = std::filesystem;

namespace {

class OsFileTest : public ::testing::Test {
protected:
    void SetUp() override {
        _root = fs::temp_directory_path() / ("qvOsFileTest_" + std::to_string(getpid()) + "_" +
                                             ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(_root);
        fs::create_directories(_root);
    }
    void TearDown() override {
        std::error_code ignored;
        fs::permissions(_root / "locked", fs::perms::owner_all, ignored);
        fs::remove_all(_root, ignored);
    }

    OsFilePath path(std::string const& relative) const { return OsFilePath((_root / relative).string()); }
    void writeFile(std::string const& relative, std::string const& content) const {
        std::ofstream(_root / relative, std::ios::binary) << content;
    }
    std::set<std::string> entries(std::string const& relative = "") const {
        std::set<std::string> names;
        for (auto const& entry : fs::directory_iterator(_root / relative))
            names.insert(entry.path().filename().string());
        return names;
    }

    fs::path _root;
};

template <class Ex, class F>
std::string reasonOf(F&& f) {
    try {
        f();
    } catch (Ex const& ex) {
        return ex.what();
    }
    ADD_FAILURE() << "no exception";
    return {};
}

TEST_F(OsFileTest, ReportsExistenceSizeAndWritability) {
    writeFile("a.txt", "12345");
    fs::create_directory(_root / "dir");
    OsFile file(path("a.txt"));
    EXPECT_TRUE(file.exists());
    EXPECT_TRUE(file.isWritable());
    EXPECT_EQ(file.getSize(), 5u);
    EXPECT_FALSE(OsFile(path("dir")).exists());
    EXPECT_FALSE(OsFile(path("missing")).exists());
    EXPECT_FALSE(OsFile(path("missing")).isWritable());
    EXPECT_NE(reasonOf<OsFileEx::ExFileNotFound>([&] { OsFile(path("missing")).getSize(); }).find("missing"),
              std::string::npos);
}

TEST_F(OsFileTest, ReadsWholeTextAndNamesTheFileOnFailure) {
    std::string content("line 1\nline 2\n\0binary\r\n", 23);
    writeFile("a.txt", content);
    EXPECT_EQ(OsFile(path("a.txt")).readText(), content);
    writeFile("empty", "");
    EXPECT_EQ(OsFile(path("empty")).readText(), "");
    fs::create_directory(_root / "dir");
    EXPECT_NE(
        reasonOf<OsFileEx::ExFileNotFound>([&] { OsFile(path("nope.txt")).readText(); }).find("nope.txt"),
        std::string::npos);
    EXPECT_NE(reasonOf<OsFileEx::ExInvalidPath>([&] { OsFile(path("dir")).readText(); }).find("dir"),
              std::string::npos);
}

TEST_F(OsFileTest, RemovesFilesButNotDirectories) {
    writeFile("a.txt", "x");
    fs::create_directory(_root / "dir");
    EXPECT_TRUE(OsFile(path("a.txt")).remove());
    EXPECT_FALSE(fs::exists(_root / "a.txt"));
    EXPECT_FALSE(OsFile(path("a.txt")).remove()); // already gone: not an error
    EXPECT_THROW(OsFile(path("dir")).remove(), OsFileEx::ExInvalidPath);
    EXPECT_TRUE(fs::is_directory(_root / "dir"));
}

TEST_F(OsFileTest, RenamesOverAnExistingFile) {
    writeFile("tmp", "new");
    writeFile("final", "old");
    OsFile(path("tmp")).renameTo(path("final"));
    EXPECT_EQ(entries(), std::set<std::string>{"final"});
    EXPECT_EQ(OsFile(path("final")).readText(), "new");
    EXPECT_NE(
        reasonOf<OsFileEx::ExFileNotFound>([&] { OsFile(path("tmp")).renameTo(path("final")); }).find("tmp"),
        std::string::npos);
    writeFile("other", "x");
    EXPECT_THROW(OsFile(path("other")).renameTo(path("no/such/dir/x")), OsFileEx::ExIOError);
    EXPECT_TRUE(fs::exists(_root / "other"));
}

TEST_F(OsFileTest, AtomicWriteCreatesAndReplacesLeavingNoTemporaryFile) {
    OsFile file(path("comp.xml"));
    file.writeAtomically("first");
    EXPECT_EQ(file.readText(), "first");
    file.writeAtomically(std::string(1 << 20, 'z'));
    EXPECT_EQ(file.getSize(), 1u << 20);
    file.writeAtomically("");
    EXPECT_EQ(file.readText(), "");
    EXPECT_EQ(entries(), std::set<std::string>{"comp.xml"});
}

TEST_F(OsFileTest, FailedAtomicWriteLeavesTheTargetAsItWas) {
    // A directory under the target's name: nothing may replace it.
    fs::create_directory(_root / "taken");
    writeFile("taken/inside", "keep");
    EXPECT_NE(
        reasonOf<OsFileEx::ExInvalidPath>([&] { OsFile(path("taken")).writeAtomically("x"); }).find("taken"),
        std::string::npos);
    EXPECT_EQ(OsFile(path("taken/inside")).readText(), "keep");

    // No directory to write in.
    EXPECT_THROW(OsFile(path("absent/a.txt")).writeAtomically("x"), OsFileEx::ExFileError);
    EXPECT_EQ(entries(), (std::set<std::string>{"taken"}));

    // A path that names no file.
    EXPECT_THROW(OsFile(OsFilePath("")).writeAtomically("x"), OsFileEx::ExInvalidPath);
}

TEST_F(OsFileTest, AtomicWriteRespectsPermissionsAndKeepsTheOldFile) {
    if (geteuid() == 0)
        GTEST_SKIP() << "permissions do not bind the super-user";
    // A read-only file, and a file in a directory that refuses new entries.
    writeFile("readonly.txt", "old");
    fs::permissions(_root / "readonly.txt", fs::perms::owner_read);
    EXPECT_THROW(OsFile(path("readonly.txt")).writeAtomically("new"), OsFileEx::ExIOError);
    EXPECT_EQ(OsFile(path("readonly.txt")).readText(), "old");

    fs::create_directory(_root / "locked");
    writeFile("locked/a.txt", "old");
    fs::permissions(_root / "locked", fs::perms::owner_read | fs::perms::owner_exec);
    std::string reason =
        reasonOf<OsFileEx::ExIOError>([&] { OsFile(path("locked/a.txt")).writeAtomically("new"); });
    EXPECT_NE(reason.find("locked/a.txt"), std::string::npos) << reason;
    EXPECT_EQ(OsFile(path("locked/a.txt")).readText(), "old");
    EXPECT_EQ(entries("locked"), std::set<std::string>{"a.txt"});
}

TEST_F(OsFileTest, UniqueFileNamesAreFreshAndKeepPrefixAndExtension) {
    std::set<std::string> seen;
    for (int i = 0; i < 100; ++i) {
        OsFilePath name = OsFileUtils::createUniqueFileName(path(""), "render_", ".exr");
        EXPECT_EQ(name.getDirectoryName(), _root.string());
        EXPECT_EQ(name.getBaseName(true).rfind("render_", 0), 0u) << name.toString();
        EXPECT_EQ(name.getExtension(), "exr");
        EXPECT_FALSE(fs::exists(name.toStdPath()));
        EXPECT_TRUE(seen.insert(name.toString()).second) << name.toString();
    }
    EXPECT_EQ(OsFileUtils::createUniqueFileName(path(""), "t", "").getExtension(), "");
    EXPECT_THROW(OsFileUtils::createUniqueFileName(path("absent"), "t", "exr"), OsFileEx::ExInvalidPath);
    EXPECT_THROW(OsFileUtils::createUniqueFileName(path(""), "a/b", "exr"), OsFileEx::ExInvalidPath);
    EXPECT_THROW(OsFileUtils::createUniqueFileName(path(""), "t", "e/x"), OsFileEx::ExInvalidPath);
}

TEST_F(OsFileTest, DirectoryTypeAndRecursiveCreation) {
    writeFile("file", "x");
    EXPECT_EQ(OsDirectory(path("")).getType(), OsDirectory::DIRECTORY);
    EXPECT_EQ(OsDirectory(path("file")).getType(), OsDirectory::REGULAR_FILE);
    EXPECT_EQ(OsDirectory(path("absent")).getType(), OsDirectory::NOT_FOUND);

    OsDirectory deep(path("a/b/c"));
    EXPECT_FALSE(deep.exists());
    EXPECT_TRUE(deep.create());
    EXPECT_TRUE(deep.exists());
    EXPECT_FALSE(deep.create());
    EXPECT_THROW(OsDirectory(path("file")).create(), OsFileEx::ExInvalidPath);
    EXPECT_THROW(OsDirectory(path("file/sub")).create(), OsFileEx::ExInvalidPath);
}

TEST_F(OsFileTest, ListsChildrenSortedByNameOfTheKindAskedAndFiltered) {
    for (char const* name : {"p10.tif", "p9.tif", "p8.tif", "P1.tif", "p08.tif", "notes.txt", ".p7.tif"})
        writeFile(name, "x");
    fs::create_directory(_root / "p5.tif");
    fs::create_directory(_root / "sub");

    auto names = [](std::vector<OsFilePath> const& paths) {
        std::vector<std::string> result;
        for (OsFilePath const& p : paths)
            result.push_back(p.getBaseName(true));
        return result;
    };
    OsDirectory dir(path(""));
    EXPECT_EQ(names(dir.getChildrenPath(OsDirectory::FILES)),
              (std::vector<std::string>{".p7.tif", "P1.tif", "notes.txt", "p08.tif", "p10.tif", "p8.tif",
                                        "p9.tif"}));
    EXPECT_EQ(names(dir.getChildrenPath(OsDirectory::DIRECTORIES)),
              (std::vector<std::string>{"p5.tif", "sub"}));
    EXPECT_EQ(dir.getChildrenPath(OsDirectory::FILES_AND_DIRECTORIES).size(), 9u);
    EXPECT_EQ(names(dir.getChildrenPath(OsDirectory::FILES, OsWildcardFilter("p?.tif"))),
              (std::vector<std::string>{"p8.tif", "p9.tif"}));
    EXPECT_EQ(names(dir.getChildrenPath(OsDirectory::FILES, OsWildcardFilter("p??.tif"))),
              (std::vector<std::string>{"p08.tif", "p10.tif"}));
    EXPECT_EQ(dir.getChildrenPath(OsDirectory::FILES, OsWildcardFilter("p*.tif")).front(), path("p08.tif"));

    EXPECT_NE(reasonOf<OsFileEx::ExInvalidPath>([&] {
                  OsDirectory(path("absent")).getChildrenPath(OsDirectory::FILES);
              }).find("absent"),
              std::string::npos);
    EXPECT_THROW(OsDirectory(path("notes.txt")).getChildrenPath(OsDirectory::FILES), OsFileEx::ExInvalidPath);
}

} // namespace
