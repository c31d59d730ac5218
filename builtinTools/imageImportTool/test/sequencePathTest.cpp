// BtSequencePath: the parts of a path, its file names, and the sequences made
// from single files or from a part of another sequence.
#include "assertions.h"
#include "btSequencePath.h"

#include <gtest/gtest.h>
#include <ostream>

using namespace Qv;

namespace {

struct Parts {
    char const* path;
    char const* scheme;
    char const* directory;
    char const* fileNamePattern;
    char const* sequenceName;
    int nbFiles;
    int startFileNo;
    char const* firstFile;
};

class PathParts : public ::testing::TestWithParam<Parts> {};

TEST_P(PathParts, AreCutAroundTheFirstInnermostBracket) {
    Parts const& c = GetParam();
    OPtrRet<BtSequencePath> path = BtSequencePath::create(c.path);
    EXPECT_EQ(path->getScheme(), c.scheme) << c.path;
    EXPECT_EQ(path->getDirectory(), c.directory) << c.path;
    EXPECT_EQ(path->getFileNamePattern(), c.fileNamePattern) << c.path;
    EXPECT_EQ(path->getSequenceName(), c.sequenceName) << c.path;
    EXPECT_EQ(path->getNbFiles(), c.nbFiles) << c.path;
    EXPECT_EQ(path->getStartFileNo(), c.startFileNo) << c.path;
    EXPECT_EQ(path->getFileNameAt(0), c.firstFile) << c.path;
}

INSTANTIATE_TEST_SUITE_P(
    Paths, PathParts,
    ::testing::Values(
        Parts{"d/a.[001:003].dpx", "", "d", "a.[#].dpx", "a", 3, 1, "d/a.001.dpx"},
        Parts{"d/a.dpx", "", "d", "a.dpx", "a", 1, 1, "d/a.dpx"},
        Parts{"cache:shots/a.[7,9].exr", "cache", "shots", "a.[#].exr", "a", 2, 7, "shots/a.7.exr"},
        Parts{"C:/shots/a.[2:3].exr", "", "C:/shots", "a.[#].exr", "a", 2, 2, "C:/shots/a.2.exr"},
        Parts{"/x/p[[10:12]q.tif", "", "/x", "p[[#]q.tif", "p[q", 3, 10, "/x/p[10q.tif"},
        Parts{"/x/p[1:3.tif", "", "/x", "p[1:3.tif", "p[1_3", 1, 1, "/x/p[1:3.tif"},
        Parts{"[1:3].dpx", "", "", "[#].dpx", "Unnamed_sequence", 3, 1, "1.dpx"},
        Parts{"d/my shot.v2_[1:2].exr", "", "d", "my shot.v2_[#].exr", "my shot.v2_", 2, 1,
              "d/my shot.v2_1.exr"}));

TEST(BtSequencePath, FileNamesFollowTheIndexNotTheFrameNumber) {
    OPtrRet<BtSequencePath> path = BtSequencePath::create("cache:/s/p.[5,9,0100:0101].exr");
    std::vector<std::string> names;
    for (int i = 0; i < path->getNbFiles(); ++i)
        names.push_back(path->getFileNameAt(i));
    EXPECT_EQ(names,
              (std::vector<std::string>{"/s/p.5.exr", "/s/p.9.exr", "/s/p.0100.exr", "/s/p.0101.exr"}));
    EXPECT_EQ(path->getPath(), "cache:/s/p.[5,9,0100:0101].exr");
    EXPECT_EQ(path->getPath(BtSequencePath::EXCLUDE_SCHEME), "/s/p.[5,9,0100:0101].exr");
    EXPECT_EQ(path->getPattern(), "/s/p.[#].exr");
    path->setDirectory("/t/u/");
    EXPECT_EQ(path->getFileNameAt(0), "/t/u/p.5.exr");
}

struct Notation {
    char const* file;
    char const* notation;
};

class Notations : public ::testing::TestWithParam<Notation> {};

TEST_P(Notations, TurnTheDigitsBeforeTheLastDotIntoARange) {
    EXPECT_EQ(BtSequencePath::toSequencePathNotation(GetParam().file), GetParam().notation);
}

INSTANTIATE_TEST_SUITE_P(Files, Notations,
                         ::testing::Values(Notation{"a.0012.dpx", "a.[0012].dpx"}, Notation{"a12", "a12"},
                                           Notation{"a12b.dpx", "a12b.dpx"}, Notation{".5", ".5"},
                                           Notation{"5.dpx", "[5].dpx"},
                                           Notation{"d/p_v2.0007.exr", "d/p_v2.[0007].exr"},
                                           Notation{"", ""}));

struct Scheme {
    char const* path;
    bool found;
    char const* scheme;
    char const* rest;
};

class Schemes : public ::testing::TestWithParam<Scheme> {};

TEST_P(Schemes, AreCutFromTheFirstComponentOnly) {
    std::string path = GetParam().path;
    std::string scheme;
    EXPECT_EQ(BtSequencePath::extractScheme(path, scheme), GetParam().found) << GetParam().path;
    EXPECT_EQ(scheme, GetParam().scheme);
    EXPECT_EQ(path, GetParam().rest);
}

INSTANTIATE_TEST_SUITE_P(Paths, Schemes,
                         ::testing::Values(Scheme{"", false, "", ""}, Scheme{"C:/x", false, "", "C:/x"},
                                           Scheme{"cache:x/y", true, "cache", "x/y"},
                                           Scheme{"x/a:b", false, "", "x/a:b"},
                                           Scheme{"ab:", true, "ab", ""}));

TEST(BtSequencePath, OneFileIsAOneFrameSequence) {
    OPtrRet<BtSequencePath> path = BtSequencePath::createFromFilePath("d/p.0042.exr");
    EXPECT_EQ(path->getPath(), "d/p.[0042].exr");
    EXPECT_EQ(path->getNbFiles(), 1);
    EXPECT_EQ(path->getStartFileNo(), 42);
    OPtrRet<BtSequencePath> plain = BtSequencePath::createFromFilePath("d/notes.txt");
    EXPECT_EQ(plain->getRangeSpec(), nullptr);
    EXPECT_EQ(plain->getNbFiles(), 1);
}

TEST(BtSequencePath, FilesAddedOneByOneMakeOrderedRanges) {
    OPtrRet<BtSequencePath> path = BtSequencePath::create();
    EXPECT_EQ(path->getNbFiles(), 0);
    EXPECT_TRUE(path->addFileName("d/p.0003.exr"));
    EXPECT_TRUE(path->addFileName("d/p.0001.exr"));
    EXPECT_TRUE(path->addFileName("d/p.0002.exr"));
    EXPECT_FALSE(path->addFileName("d/q.0004.exr"));
    EXPECT_FALSE(path->addFileName("e/p.0004.exr"));
    EXPECT_FALSE(path->addFileName("d/p.exr"));
    EXPECT_TRUE(path->addFileName("d/p.0007.exr"));
    EXPECT_EQ(path->getPath(), "d/p.[0001:0003,0007].exr");
    EXPECT_EQ(path->getNbFiles(), 4);
}

struct Part {
    char const* path;
    int in, out;
    char const* expected;
};

void PrintTo(Part const& part, std::ostream* os) {
    *os << part.path << " from " << part.in << " to " << part.out;
}

class Selections : public ::testing::TestWithParam<Part> {};

TEST_P(Selections, OfASequenceKeepItsFramesAndPadding) {
    Part const& c = GetParam();
    EXPECT_EQ(BtSequencePath::create(c.path, c.in, c.out)->getPath(), c.expected);
}

INSTANTIATE_TEST_SUITE_P(Parts, Selections,
                         ::testing::Values(Part{"d/p.[0001:0010].exr", 2, 4, "d/p.[0003:0005].exr"},
                                           Part{"d/p.[1:10|2].exr", 1, 3, "d/p.[3,5,7].exr"},
                                           Part{"s:d/p.[1:3].exr", -5, 99, "s:d/p.[1:3].exr"},
                                           Part{"s:d/p.[1:3].exr", 1, 99, "s:d/p.[2:3].exr"},
                                           Part{"d/p.exr", 0, 0, "d/p.exr"}));

TEST(BtSequencePath, BoundsOutsideTheSequenceFailAnAssertion) {
    auto reasonOf = [](int in, int out) {
        try {
            BtSequencePath::create("p.[1:3].exr", in, out);
        } catch (AssertionsEx::ExAssertionFailed const& error) {
            return error.getReason();
        }
        return std::string("no assertion");
    };
    EXPECT_EQ(reasonOf(3, 3), "in <= lastIndex");
    EXPECT_EQ(reasonOf(2, 1), "in <= out");
    EXPECT_EQ(reasonOf(0, 2), "no assertion");
    // The whole path is always there, even with no file to select.
    OPtrRet<BtSequencePath> reversed = BtSequencePath::create("p.[10:5].exr");
    EXPECT_EQ(reversed->getNbFiles(), 0);
    EXPECT_THROW(BtSequencePath::create("p.[10:5].exr", 0, 0), AssertionsEx::ExAssertionFailed);
}

TEST(BtSequencePath, SetRangeReplacesAnExistingRangeOnly) {
    OPtrRet<BtSequencePath> path = BtSequencePath::create("d/p.[1:3].exr");
    path->setRange(10, 5, 4);
    EXPECT_EQ(path->getPath(), "d/p.[0010:0014].exr");
    EXPECT_EQ(path->getNbFiles(), 5);
    OPtrRet<BtSequencePath> single = BtSequencePath::create("d/p.exr");
    single->setRange(10, 5, 4);
    EXPECT_EQ(single->getPath(), "d/p.exr");
    EXPECT_EQ(BtSequencePath::getPatternRangeMarker(), std::string("[#]"));
}

} // namespace
