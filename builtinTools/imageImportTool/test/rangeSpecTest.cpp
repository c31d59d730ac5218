// Frame ranges: how a text reads, how many items a range claims, and how
// frames inserted one by one grow, split and merge the ranges.
#include "btRangeSpec.h"

#include <gtest/gtest.h>

using namespace Qv;
using BtRange = BtRangeSpec::BtRange;

namespace {

struct RangeText {
    char const* text;
    int first, last, step, padded, nbItems;
    char const* spec;
};

class RangeTexts : public ::testing::TestWithParam<RangeText> {};

TEST_P(RangeTexts, ReadTheirBoundsPaddingAndItemCount) {
    RangeText const& c = GetParam();
    BtRange const range(c.text);
    EXPECT_EQ(range.getFirst(), c.first) << c.text;
    EXPECT_EQ(range.getLast(), c.last) << c.text;
    EXPECT_EQ(range.getStep(), c.step) << c.text;
    EXPECT_EQ(range.getPadded(), c.padded) << c.text;
    EXPECT_EQ(range.getNbItems(), c.nbItems) << c.text;
    EXPECT_EQ(range.getSpec(), c.spec) << c.text;
}

INSTANTIATE_TEST_SUITE_P(
    Texts, RangeTexts,
    ::testing::Values(RangeText{"5", 5, 5, 1, 0, 1, "5"}, RangeText{"0", 0, 0, 1, 0, 1, "0"},
                      RangeText{"007", 7, 7, 1, 3, 1, "007"}, RangeText{"001:003", 1, 3, 1, 3, 3, "001:003"},
                      RangeText{"1:100", 1, 100, 1, 0, 100, "1:100"},
                      // A padded first takes the width of the last text.
                      RangeText{"0001:100", 1, 100, 1, 3, 100, "001:100"},
                      RangeText{"1:10|2", 1, 10, 2, 0, 5, "1:10|2"},
                      RangeText{"1:10|3", 1, 10, 3, 0, 4, "1:10|3"},
                      // n / step + n % step, not the usual count: 1, 4, 7, 10 exist, 5 are claimed.
                      RangeText{"1:11|3", 1, 11, 3, 0, 5, "1:11|3"},
                      RangeText{"1:10|0", 1, 10, 1, 0, 10, "1:10"}, RangeText{"8|2", 8, 8, 1, 0, 1, "8"},
                      RangeText{"10:5", 10, 5, 1, 0, 0, "10"}, RangeText{"10:5|2", 10, 5, 2, 0, 0, "10"},
                      RangeText{"#", 0, 0, 1, 0, 1, "0"}, RangeText{"::", 0, 0, 1, 0, 1, "0"}));

TEST(BtRange, ValuesAreSteppedAndZeroFilledUpToTheClaimedItems) {
    BtRange const range("001:011|3");
    EXPECT_EQ(range.getValueAt(0), "001");
    EXPECT_EQ(range.getValueAt(3), "010");
    EXPECT_EQ(range.getValueAt(4), "013");
    EXPECT_EQ(range.getValueAt(5), "");
    EXPECT_EQ(range.getValueAt(-1), "");
}

TEST(BtRange, GrowsByOneStepAtEitherEndOnly) {
    BtRange range(10, 20, 5, 0);
    EXPECT_FALSE(range.addItem(12));
    EXPECT_FALSE(range.addItem(15));
    EXPECT_TRUE(range.addItem(25));
    EXPECT_TRUE(range.addItem(5));
    EXPECT_EQ(range.getSpec(), "5:25|5");
    EXPECT_EQ(range.getNbItems(), 5);
}

TEST(BtRange, MergesWhatContinuesItWithTheSameStepAndPadding) {
    BtRange a(1, 5, 2, 0);
    EXPECT_FALSE(a.merge(BtRange(6, 9, 2, 0)));
    EXPECT_FALSE(a.merge(BtRange(7, 9, 1, 0)));
    EXPECT_FALSE(a.merge(BtRange(7, 9, 2, 3)));
    EXPECT_TRUE(a.merge(BtRange(7, 11, 2, 0)));
    EXPECT_EQ(a.getSpec(), "1:11|2");
    EXPECT_EQ(a.getNbItems(), 6);
}

struct Belonging {
    char const* text;
    int padding;
    bool belongs, tooSmall, notAligned;
};

class Belongings : public ::testing::TestWithParam<Belonging> {};

TEST_P(Belongings, TellWhereAFrameFallsAgainstARange) {
    BtRange const range("010:020|5"); // 010 015 020, padded 3
    bool tooSmall = true;
    bool notAligned = true;
    Belonging const& c = GetParam();
    EXPECT_EQ(range.belongs(c.text, c.padding, tooSmall, notAligned), c.belongs) << c.text;
    EXPECT_EQ(tooSmall, c.tooSmall) << c.text;
    EXPECT_EQ(notAligned, c.notAligned) << c.text;
}

INSTANTIATE_TEST_SUITE_P(
    Frames, Belongings,
    ::testing::Values(Belonging{"004", 3, false, true, false}, Belonging{"4", 0, false, true, false},
                      Belonging{"005", 3, true, false, false}, Belonging{"015", 3, true, false, false},
                      Belonging{"025", 3, true, false, false}, Belonging{"026", 3, false, false, false},
                      Belonging{"012", 3, false, false, true}, Belonging{"15", 0, false, false, false},
                      // The text's own width may stand for the padding.
                      Belonging{"015", 0, true, false, false}));

struct Insertion {
    char const* spec;
    std::vector<std::pair<char const*, int>> items;
    char const* expected;
};

class Insertions : public ::testing::TestWithParam<Insertion> {};

TEST_P(Insertions, KeepTheRangesOrderedAndMerged) {
    Insertion const& c = GetParam();
    BtRangeSpec spec(c.spec);
    int const before = spec.getNbItems();
    for (auto const& [text, padding] : c.items)
        EXPECT_TRUE(spec.addItem(text, padding)) << text;
    EXPECT_EQ(spec.getSpec(), c.expected) << c.spec;
    EXPECT_EQ(spec.getNbItems(), before + static_cast<int>(c.items.size())) << c.spec;
}

INSTANTIATE_TEST_SUITE_P(
    Items, Insertions,
    ::testing::Values(Insertion{"1:3", {{"4", 0}}, "1:4"}, Insertion{"1:3", {{"0", 0}}, "0:3"},
                      Insertion{"5:7", {{"2", 0}}, "2,5:7"}, Insertion{"1:3", {{"5", 0}}, "1:3,5"},
                      // Filling the gap joins the neighbours.
                      Insertion{"1:3,5:7", {{"4", 0}}, "1:7"}, Insertion{"1,3", {{"2", 0}}, "1:3"},
                      Insertion{"5", {{"3", 0}, {"4", 0}}, "3:5"},
                      // Between two steps: the range is cut around the frame.
                      Insertion{"1:9|2", {{"4", 0}}, "1:3|2,4,5:9|2"},
                      Insertion{"1:3|2", {{"2", 0}}, "1,2,3"},
                      // Padding must agree to extend a range.
                      Insertion{"001:003", {{"004", 3}}, "001:004"},
                      Insertion{"001:003", {{"4", 0}}, "001:003,4"},
                      // A frame inside a range is added again at the end.
                      Insertion{"1:3", {{"2", 0}}, "1:3,2"}, Insertion{"", {{"7", 0}, {"8", 0}}, "7:8"}));

TEST(BtRangeSpec, RefusesTextsThatAreNoFrameNumber) {
    BtRangeSpec spec("1:3");
    EXPECT_FALSE(spec.addItem("", 0));
    EXPECT_FALSE(spec.addItem("x", 0));
    EXPECT_FALSE(spec.addItem("-2", 0));
    EXPECT_FALSE(spec.addItem("99999999999", 0));
    EXPECT_EQ(spec.getSpec(), "1:3");
    EXPECT_EQ(spec.getNbItems(), 3);
}

TEST(BtRangeSpec, IndexesWalkTheRangesInWrittenOrder) {
    BtRangeSpec const spec("10:12,1:3|2,0007");
    EXPECT_EQ(spec.getNbItems(), 6);
    std::vector<std::string> values;
    for (int i = 0; i <= spec.getNbItems(); ++i)
        values.push_back(spec.getValueAt(i));
    EXPECT_EQ(values, (std::vector<std::string>{"10", "11", "12", "1", "3", "0007", ""}));
    EXPECT_EQ(BtRangeSpec(1, 5, 4).getSpec(), "0001:0005");
}

} // namespace
