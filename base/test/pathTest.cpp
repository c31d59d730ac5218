#include "baseTestHelpers.h"
#include "osFileEx.h"
#include "osFilePath.h"
#include "osWildcardFilter.h"

#include <gtest/gtest.h>

using namespace Qv;
using namespace Qv::TestHelpers;

namespace {

TEST(OsFilePathTest, DecomposesPathsIntoDirectoryBaseNameAndExtension) {
    struct Case {
        char const *text, *normalised, *directory, *baseName, *baseNameWithExtension, *extension;
        bool absolute;
    } const cases[] = {
        {"/shots/plate.0001.dpx", "/shots/plate.0001.dpx", "/shots", "plate.0001", "plate.0001.dpx", "dpx",
         true},
        {"shots/plate.[#].dpx", "shots/plate.[#].dpx", "shots", "plate.[#]", "plate.[#].dpx", "dpx", false},
        {"/home/u/.profile", "/home/u/.profile", "/home/u", ".profile", ".profile", "", true},
        {".config.xml", ".config.xml", "", ".config", ".config.xml", "xml", false},
        {"a/file.", "a/file.", "a", "file", "file.", "", false},
        {"a.d/noext", "a.d/noext", "a.d", "noext", "noext", "", false},
        {"/renders/out/", "/renders/out", "/renders", "out", "out", "", true},
        {"a//b///c.exr", "a/b/c.exr", "a/b", "c", "c.exr", "exr", false},
        {"C:\\shots\\a.tif", "C:/shots/a.tif", "C:/shots", "a", "a.tif", "tif", false},
        {"/top", "/top", "/", "top", "top", "", true},
        {"/", "/", "/", "", "", "", true},
        {"", "", "", "", "", "", false},
        {"a/..", "a/..", "a", "..", "..", "", false},
        {"./x.y", "./x.y", ".", "x", "x.y", "y", false},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.text);
        OsFilePath path(c.text);
        EXPECT_EQ(path.toString(), c.normalised);
        EXPECT_EQ(path.getDirectoryName(), c.directory);
        EXPECT_EQ(path.getBaseName(), c.baseName);
        EXPECT_EQ(path.getBaseName(true), c.baseNameWithExtension);
        EXPECT_EQ(path.getExtension(), c.extension);
        EXPECT_EQ(path.isAbsolute(), c.absolute);
    }
    EXPECT_EQ(OsFilePath("p9.tif").compare(OsFilePath("p10.tif")), 1) << "byte-wise, not natural order";
    EXPECT_LT(OsFilePath("B.tif"), OsFilePath("a.tif"));
}

TEST(OsFilePathTest, JoinsWithExactlyOneSeparator) {
    struct Case {
        char const *parent, *child, *joined;
    } const cases[] = {{"/shots/", "a.dpx", "/shots/a.dpx"},
                       {"/", "a.dpx", "/a.dpx"},
                       {"shots", "", "shots"},
                       {"shots", "/sub/a", "shots/sub/a"},
                       {"shots", "sub/", "shots/sub"}};
    for (auto const& c : cases) {
        SCOPED_TRACE(std::string(c.parent) + " + " + c.child);
        OsFilePath path(c.parent);
        EXPECT_EQ((OsFilePath(c.parent) + OsFilePath(c.child)).toString(), c.joined);
        path += c.child;
        EXPECT_EQ(path.toString(), c.joined);
    }
}

TEST(OsFilePathTest, AddsAnExtensionAfterOneDot) {
    struct Case {
        char const *path, *extension, *result;
    } const cases[] = {{"/out/comp_<FrameNo>", "exr", "/out/comp_<FrameNo>.exr"},
                       {"/out/movie", ".mov", "/out/movie.mov"},
                       {"/out/trailing.", "tif", "/out/trailing.tif"},
                       {"/out/same", "", "/out/same"}};
    for (auto const& c : cases) {
        OsFilePath path(c.path);
        EXPECT_EQ(path.addExtension(c.extension).toString(), c.result) << c.path;
    }
    for (char const* noFile : {"", "/"}) {
        OsFilePath path(noFile);
        EXPECT_THROW(path.addExtension("exr"), OsFileEx::ExInvalidPath) << noFile;
    }
    OsFilePath file("/out/a");
    EXPECT_TRUE(throwsWith<OsFileEx::ExInvalidPath>([&] { file.addExtension("x/y"); }, "/out/a", "x/y"));
    EXPECT_EQ(file.toString(), "/out/a");
}

// A multi-byte character is one character; brackets are plain characters here.
TEST(OsWildcardFilterTest, MatchesStarAndQuestionMark) {
    struct Case {
        char const *pattern, *name;
        bool matches;
    } const cases[] = {{"plate.*.dpx", "plate.0001.dpx", true},
                       {"plate.*.dpx", "plate.0001.dpx.bak", false},
                       {"plate.*.dpx", "PLATE.0001.DPX", false},
                       {"plate.?.dpx", "plate.12.dpx", false},
                       {"plate.??.dpx", "plate.12.dpx", true},
                       {"p?.tif", "p\xC3\xA9.tif", true},
                       {"*", "", true},
                       {"?", "", false},
                       {"a*b*c", "aXXbYYbZZc", true},
                       {"a*b*c", "aXXbYYbZZ", false},
                       {"*a*a*a", "aaaaaaaaaaaaaaaaaaaaaaaab", false},
                       {"[#].tif", "[#].tif", true}};
    for (auto const& c : cases)
        EXPECT_EQ(OsWildcardFilter(c.pattern).matches(c.name), c.matches) << c.pattern << " ~ " << c.name;
}

} // namespace
