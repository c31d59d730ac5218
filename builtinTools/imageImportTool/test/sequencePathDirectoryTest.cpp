// '#' and "*f" resolved over real directories of numbered files.
#include "btSequencePathEx.h"
#include "btSequencePathParser.h"
#include "osFileEx.h"
#include "sequencePathTestSupport.h"

#include <filesystem>

using namespace Qv;
using namespace Qv::TestHelpers;
using BtSequencePathParser::resolveSequencePath;

namespace {

struct OnDisk {
    std::vector<std::string> files;
    char const* text;
    char const* expected; // relative to the folder; "" when nothing is selected
};

class DiskResolution : public SequenceDirTest, public ::testing::WithParamInterface<OnDisk> {};

TEST_P(DiskResolution, SelectsTheFramesOnDisk) {
    for (std::string const& name : GetParam().files)
        writeFile(name, "");
    EXPECT_EQ(strip(resolveSequencePath(at(GetParam().text))), GetParam().expected) << GetParam().text;
}

std::vector<std::string> const ONE_TO_FIVE{"p.1.exr", "p.2.exr", "p.3.exr", "p.4.exr", "p.5.exr"};
std::vector<std::string> const GAPPED{"p1.tif", "p2.tif", "p3.tif", "p7.tif", "p8.tif", "p9.tif"};

INSTANTIATE_TEST_SUITE_P(
    Runs, DiskResolution,
    ::testing::Values(
        // Unpadded numbers that grow a digit make one run; padded ones are one pass.
        OnDisk{{"p8.tif", "p9.tif", "p10.tif"}, "p[#].tif", "p[8:10].tif"},
        OnDisk{{"p08.tif", "p09.tif", "p10.tif"}, "p[#].tif", "p[08:10].tif"},
        OnDisk{{"p008.tif", "p010.tif"}, "p[#].tif", "p[008,010].tif"},
        OnDisk{{"p98.tif", "p99.tif", "p100.tif", "p101.tif"}, "p[#].tif", "p[98:101].tif"},
        // A padded run stays apart from a wider one; runs come narrowest first.
        OnDisk{{"p10.tif", "p11.tif", "p008.tif", "p009.tif"}, "p[#].tif", "p[10:11,008:009].tif"},
        OnDisk{{"p09.tif", "p010.tif"}, "p[#].tif", "p[09,010].tif"},
        OnDisk{{"p.0001.exr", "p.0002.exr", "p.0004.exr"}, "p.[#].exr", "p.[0001:0002,0004].exr"},
        // Names that are not numbers, other suffixes, folders: ignored.
        OnDisk{{"p1.tif", "p2.tif", "p12a.tif", "p-3.tif", "p.tif", "q3.tif", "p4.tiff"},
               "p[#].tif",
               "p[1:2].tif"},
        OnDisk{{"p.a.exr", "p..exr"}, "p.[#].exr", ""}, OnDisk{{}, "p.[#].exr", ""},
        OnDisk{{"p.99999999999.exr", "p.3.exr"}, "p.[#].exr", "p.[3].exr"},
        // Skips and counts are counted in frames on disk.
        OnDisk{ONE_TO_FIVE, "p.[#+2].exr", "p.[3:5].exr"}, OnDisk{ONE_TO_FIVE, "p.[#/3f].exr", "p.[1:3].exr"},
        OnDisk{ONE_TO_FIVE, "p.[2/*f].exr", "p.[3:5].exr"},
        OnDisk{ONE_TO_FIVE, "p.[#/*f].exr", "p.[1:5].exr"}, OnDisk{ONE_TO_FIVE, "p.[5/*f].exr", ""},
        OnDisk{ONE_TO_FIVE, "p.[#/3f+1].exr", "p.[2:4].exr"},
        OnDisk{ONE_TO_FIVE, "p.[#|2].exr", "p.[1:5|2].exr"},
        OnDisk{ONE_TO_FIVE, "p.[#/2f|3].exr", "p.[1:4|3].exr"},
        OnDisk{ONE_TO_FIVE, "p.[#+4].exr", "p.[5].exr"}, OnDisk{ONE_TO_FIVE, "p.[#/9f].exr", "p.[1:5].exr"},
        // A step walks on across the break between runs.
        OnDisk{GAPPED, "p[#|2].tif", "p[1:3|2,7:9|2].tif"}, OnDisk{GAPPED, "p[#+3].tif", "p[7:9].tif"},
        OnDisk{GAPPED, "p[#+1|3].tif", "p[2,7].tif"}, OnDisk{GAPPED, "p[#/3f|2].tif", "p[1:3|2,7].tif"},
        OnDisk{{"p1.tif", "p2.tif", "p3.tif", "p5.tif", "p9.tif", "p10.tif", "p11.tif", "p12.tif"},
               "p[#|4].tif",
               "p[1,5,11].tif"},
        // Explicit items come first, then the resolved ones.
        OnDisk{{"p1.tif", "p2.tif"}, "p[5,#].tif", "p[5,1:2].tif"},
        OnDisk{{"p1.tif", "p2.tif"}, "p[#,5].tif", "p[5,1:2].tif"},
        OnDisk{{"p1.tif", "p2.tif"}, "p[#,#/2f].tif", "p[1:2,1:2].tif"},
        OnDisk{ONE_TO_FIVE, "p.[#+2,#].exr", "p.[3:5,3:5].exr"},
        OnDisk{ONE_TO_FIVE, "p.[9,2/*f].exr", "p.[9,3:5].exr"},
        OnDisk{ONE_TO_FIVE, "p.[2/*f,9].exr", "p.[9,3:5].exr"},
        // Brackets in a name: the first '[' is a wildcard's only when it is the pattern's.
        OnDisk{{"pA.1.exr", "pB.2.exr"}, "p?.[#].exr", ""},
        // There the numbers come in name order, and runs never go down.
        OnDisk{{"p.1.exr", "p.2.exr", "p.10.exr", "p.011.exr"}, "p*[#].exr", "p*[11,1,10,2].exr"}));

TEST_F(SequenceDirTest, WildcardInAMissingDirectoryIsAnInvalidPath) {
    EXPECT_TRUE(throwsWith<OsFileEx::ExInvalidPath>([&] { resolveSequencePath(at("none/p.[#].exr")); },
                                                    "BtSequencePathBuilder::collectSequenceInfo", "none"));
}

TEST_F(SequenceDirTest, WildcardOnANameWithoutADotIsAnInvalidPath) {
    touch({"p1", "p2"});
    EXPECT_TRUE(throwsWith<OsFileEx::ExInvalidPath>([&] { resolveSequencePath(at("p[#]")); }, "has no '.'"));
}

TEST_F(SequenceDirTest, ExplicitPathsDoNotLookAtTheDisk) {
    EXPECT_EQ(strip(resolveSequencePath(at("none/p.[1:3].exr"))), "none/p.[1:3].exr");
}

TEST_F(SequenceDirTest, DirectoriesNamedLikeFramesAreNoFrames) {
    touch({"p.1.exr"});
    std::filesystem::create_directory(_root / "p.2.exr");
    EXPECT_EQ(strip(resolveSequencePath(at("p.[#].exr"))), "p.[1].exr");
}

TEST_F(SequenceDirTest, OneFileNameResolvesToItsWholeSequence) {
    touch({"p.0001.exr", "p.0002.exr", "p.0003.exr", "p.0005.exr", "q.0004.exr"});
    EXPECT_EQ(strip(BtSequencePathParser::resolveFullSequencePath(at("p.0002.exr"))),
              "p.[0001:0003,0005].exr");
}

} // namespace
