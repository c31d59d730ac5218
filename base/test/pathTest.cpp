#include "osFileEx.h"
#include "osFilePath.h"
#include "osWildcardFilter.h"

#include <gtest/gtest.h>

using namespace Qv;

namespace {

struct Decomposition {
    char const* text;
    char const* normalised;
    char const* directory;
    char const* baseName;
    char const* baseNameWithExtension;
    char const* extension;
    bool absolute;
};

TEST(OsFilePathTest, DecomposesPathsIntoDirectoryBaseNameAndExtension) {
    Decomposition const cases[] = {
        {"/shots/plate.0001.dpx", "/shots/plate.0001.dpx", "/shots", "plate.0001", "plate.0001.dpx", "dpx",
         true},
        {"shots/plate.[#].dpx", "shots/plate.[#].dpx", "shots", "plate.[#]", "plate.[#].dpx", "dpx", false},
        {"archive.tar.gz", "archive.tar.gz", "", "archive.tar", "archive.tar.gz", "gz", false},
        {"/home/u/.profile", "/home/u/.profile", "/home/u", ".profile", ".profile", "", true},
        {".config.xml", ".config.xml", "", ".config", ".config.xml", "xml", false},
        {"a/Makefile", "a/Makefile", "a", "Makefile", "Makefile", "", false},
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
    for (Decomposition const& c : cases) {
        SCOPED_TRACE(c.text);
        OsFilePath path(c.text);
        EXPECT_EQ(path.toString(), c.normalised);
        EXPECT_STREQ(path.getChars(), c.normalised);
        EXPECT_EQ(path.getDirectoryName(), c.directory);
        EXPECT_EQ(path.getBaseName(), c.baseName);
        EXPECT_EQ(path.getBaseName(true), c.baseNameWithExtension);
        EXPECT_EQ(path.getExtension(), c.extension);
        EXPECT_EQ(path.isAbsolute(), c.absolute);
    }
}

TEST(OsFilePathTest, JoinsWithExactlyOneSeparator) {
    struct Case {
        char const* parent;
        char const* child;
        char const* joined;
    } const cases[] = {
        {"/shots", "a.0001.dpx", "/shots/a.0001.dpx"},
        {"/shots/", "a.dpx", "/shots/a.dpx"},
        {"/", "a.dpx", "/a.dpx"},
        {"", "a.dpx", "a.dpx"},
        {"shots", "", "shots"},
        {"shots", "/sub/a.dpx", "shots/sub/a.dpx"},
        {"shots", "sub/", "shots/sub"},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(std::string(c.parent) + " + " + c.child);
        OsFilePath path(c.parent);
        EXPECT_EQ((OsFilePath(c.parent) + OsFilePath(c.child)).toString(), c.joined);
        path += c.child;
        EXPECT_EQ(path.toString(), c.joined);
    }
}

TEST(OsFilePathTest, AddsAnExtensionAfterOneDot) {
    struct Case {
        char const* path;
        char const* extension;
        char const* result;
    } const cases[] = {
        {"/out/comp_<FrameNo>", "exr", "/out/comp_<FrameNo>.exr"},
        {"/out/movie", ".mov", "/out/movie.mov"},
        {"/out/a.b", "c", "/out/a.b.c"},
        {"/out/trailing.", "tif", "/out/trailing.tif"},
        {"/out/same", "", "/out/same"},
        {".hidden", "xml", ".hidden.xml"},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.path);
        OsFilePath path(c.path);
        EXPECT_EQ(path.addExtension(c.extension).toString(), c.result);
        EXPECT_EQ(path.getExtension(), OsFilePath(c.result).getExtension());
    }
}

TEST(OsFilePathTest, RefusesAnExtensionWithoutFileNameOrWithSeparator) {
    OsFilePath empty;
    EXPECT_THROW(empty.addExtension("exr"), OsFileEx::ExInvalidPath);
    OsFilePath root("/");
    EXPECT_THROW(root.addExtension("exr"), OsFileEx::ExInvalidPath);
    OsFilePath file("/out/a");
    try {
        file.addExtension("x/y");
        FAIL() << "no exception";
    } catch (OsFileEx::ExInvalidPath const& ex) {
        EXPECT_NE(std::string(ex.what()).find("/out/a"), std::string::npos) << ex.what();
    }
    EXPECT_EQ(file.toString(), "/out/a");
}

TEST(OsFilePathTest, ComparesNormalisedTextsByteWise) {
    EXPECT_EQ(OsFilePath("a//b/").compare(OsFilePath("a/b")), 0);
    EXPECT_EQ(OsFilePath("a/b"), OsFilePath("a\\b"));
    EXPECT_EQ(OsFilePath("p10.tif").compare(OsFilePath("p9.tif")), -1);
    EXPECT_EQ(OsFilePath("p9.tif").compare(OsFilePath("p10.tif")), 1);
    EXPECT_LT(OsFilePath("B.tif"), OsFilePath("a.tif")); // case sensitive, capitals first
    EXPECT_NE(OsFilePath("a.tif"), OsFilePath("A.tif"));
}

TEST(OsWildcardFilterTest, MatchesStarAndQuestionMark) {
    struct Case {
        char const* pattern;
        char const* name;
        bool matches;
    } const cases[] = {
        {"plate.*.dpx", "plate.0001.dpx", true},
        {"plate.*.dpx", "plate..dpx", true},
        {"plate.*.dpx", "plate.0001.exr", false},
        {"plate.*.dpx", "plate.0001.dpx.bak", false},
        {"plate.*.dpx", "PLATE.0001.DPX", false},
        {"plate.?.dpx", "plate.1.dpx", true},
        {"plate.?.dpx", "plate.12.dpx", false},
        {"plate.??.dpx", "plate.12.dpx", true},
        {"plate.??.dpx", "plate.1.dpx", false},
        {"p?.tif", "p\xC3\xA9.tif", true}, // one character of two bytes
        {"*", "", true},
        {"*", "anything", true},
        {"", "", true},
        {"", "a", false},
        {"?", "", false},
        {"a*b*c", "aXXbYYbZZc", true},
        {"a*b*c", "aXXbYYbZZ", false},
        {"*a*a*a", "aaaaaaaaaaaaaaaaaaaaaaaab", false},
        {"**.tif", "x.tif", true},
        {"*.tif*", "x.tif", true},
        {"[#].tif", "[#].tif", true}, // brackets are plain characters here
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(std::string(c.pattern) + " ~ " + c.name);
        EXPECT_EQ(OsWildcardFilter(c.pattern).matches(c.name), c.matches);
    }
}

} // namespace
