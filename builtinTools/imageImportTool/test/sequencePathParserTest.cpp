// The sequence path language without the disk: the splitter, every form a user
// can write between the brackets, the arithmetic of the builder, and the
// errors with their texts and columns.
#include "btSequencePathBuilder.h"
#include "btSequencePathEx.h"
#include "btSequencePathParser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

using namespace Qv;
using BtSequencePathParser::resolveSequencePath;

namespace {

struct Resolved {
    char const* text;
    char const* expected;
};

class ExplicitPaths : public ::testing::TestWithParam<Resolved> {};

TEST_P(ExplicitPaths, ResolveToTheirCanonicalForm) {
    EXPECT_EQ(resolveSequencePath(GetParam().text), GetParam().expected) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(Forms, ExplicitPaths,
                         ::testing::Values(
                             // The splitter: no bracket, separators, literal brackets after the first pair.
                             Resolved{"", ""}, Resolved{"shots/plate.dpx", "shots/plate.dpx"},
                             Resolved{"shots\\plate.[1:2].dpx", "shots/plate.[1:2].dpx"},
                             Resolved{"a//b/p.[1:2]", "a/b/p.[1:2]"},
                             Resolved{"p.[1:3].exr.[x]", "p.[1:3].exr.[x]"}, Resolved{"p[1]x]y", "p[1]x]y"},
                             // n: the frame as written, zeros kept; a list of them.
                             Resolved{"a.[007].dpx", "a.[007].dpx"}, Resolved{"[5,7,9]", "[5,7,9]"},
                             Resolved{"[99999999999]", "[99999999999]"},
                             // a:b keeps the width of a on both ends.
                             Resolved{"a.[001:003].dpx", "a.[001:003].dpx"},
                             Resolved{"a.[1:100]", "a.[1:100]"}, Resolved{"a.[0001:100]", "a.[0001:0100]"},
                             Resolved{"a.[01:1000]", "a.[01:1000]"},
                             // a:b|s, a:b+k and both in either order; a step of 0 or 1 is not written.
                             Resolved{"[1:10|3]", "[1:10|3]"}, Resolved{"[1:10|1]", "[1:10]"},
                             Resolved{"[1:10|0]", "[1:10]"}, Resolved{"[1:10+2]", "[3:10]"},
                             Resolved{"[1:10|2+2]", "[3:10|2]"}, Resolved{"[1:10+2|2]", "[3:10|2]"},
                             // a/Nf: N frames from a, spread by a step, moved by a skip.
                             Resolved{"[7/2f]", "[7:8]"}, Resolved{"[3/4f|2]", "[3:9|2]"},
                             Resolved{"[5/4f+2]", "[7:10]"}, Resolved{"[5/4f+2|3]", "[7:16|3]"},
                             Resolved{"[0005/3f]", "[0005:0007]"}, Resolved{"[0/10f]", "[0:9]"},
                             // Blanks inside the bracket are skipped; items keep their written order.
                             Resolved{"[ 1 : 5 ]", "[1:5]"}, Resolved{"[\t1:2 ,\n4]", "[1:2,4]"},
                             Resolved{"p.[10:12,1:3,0002/2f].exr", "p.[10:12,1:3,0002:0003].exr"}));

struct Refused {
    char const* text;
    char const* detail;
    int from;
    int to;
};

class RefusedPaths : public ::testing::TestWithParam<Refused> {};

TEST_P(RefusedPaths, ThrowASyntaxErrorNamingTheColumns) {
    Refused const& c = GetParam();
    try {
        resolveSequencePath(c.text);
        ADD_FAILURE() << c.text << " was accepted";
    } catch (BtSequencePathEx::ExSyntaxError const& error) {
        EXPECT_EQ(error.getDetail(), c.detail) << c.text;
        EXPECT_EQ(error.getFrom(), c.from) << c.text;
        EXPECT_EQ(error.getTo(), c.to) << c.text;
        EXPECT_EQ(error.getReason(), "Error in the sequence path at columns " + std::to_string(c.from) +
                                         " to " + std::to_string(c.to) + ": " + c.detail);
    }
}

constexpr char const* NOT_WELL_FORMED = "The sequence path is not well formed";

INSTANTIATE_TEST_SUITE_P(
    Errors, RefusedPaths,
    ::testing::Values(Refused{"a[1:3", "Syntax error found - no closing ]", 1, 4},
                      Refused{"a1:3]", "Syntax error found - unexpected ]", 0, 4},
                      Refused{"a]b[1]", "Syntax error found - unexpected ]", 0, 1},
                      // A count of one frame is refused on purpose.
                      Refused{"[7/1f]", NOT_WELL_FORMED, 3, 4}, Refused{"[#/1f]", NOT_WELL_FORMED, 3, 4},
                      Refused{"[x]", NOT_WELL_FORMED, 1, 1}, Refused{"[1-5]", NOT_WELL_FORMED, 2, 2},
                      Refused{"[1.5]", NOT_WELL_FORMED, 2, 2}, Refused{"foo[]bar", NOT_WELL_FORMED, 4, 4},
                      Refused{"p/q.[1,]", NOT_WELL_FORMED, 7, 7}, Refused{"[,1]", NOT_WELL_FORMED, 1, 1},
                      Refused{"[[1]", NOT_WELL_FORMED, 1, 1}, Refused{"[1::2]", NOT_WELL_FORMED, 3, 3},
                      // A single number takes no options; "*f" needs an origin; '*' alone is no token.
                      Refused{"[5|2]", NOT_WELL_FORMED, 2, 2}, Refused{"[*f]", NOT_WELL_FORMED, 1, 2},
                      Refused{"[1/*]", NOT_WELL_FORMED, 3, 3},
                      // Numbers the builder refuses: a skip below 1, overflow.
                      Refused{"[1:10+0]", NOT_WELL_FORMED, 6, 6},
                      Refused{"[1:99999999999]", NOT_WELL_FORMED, 3, 13},
                      Refused{"[1/99999999999f]", NOT_WELL_FORMED, 3, 14},
                      Refused{"ab [ 1 : 2 x ]", NOT_WELL_FORMED, 11, 11}));

TEST(SequencePathParser, KeptBuilderFailureIsRethrownWithItsOwnText) {
    BtSequencePathBuilder builder;
    builder.notifyUnrecognizedToken("x", 1, 1);
    try {
        BtSequencePathParser::parse(builder, "[x]");
        FAIL() << "no exception";
    } catch (BtSequencePathExRethrow const& error) {
        EXPECT_EQ(error.getReason(), "Error in the sequence path at columns 1 to 1: Unrecognised text \"x\"");
        EXPECT_NE(dynamic_cast<BtSequencePathEx::ExSyntaxError const*>(&error.getOriginal()), nullptr);
        OPtrRet<ExBase> copy = error.clone();
        EXPECT_THROW(copy->raise(), BtSequencePathExRethrow);
    }
}

TEST(SequencePathParser, ParseErrorNotificationIsKeptAsTheFailure) {
    BtSequencePathBuilder builder;
    EXPECT_EQ(builder.getFailureException(), nullptr);
    builder.notifyParseError(2, 5);
    ASSERT_NE(builder.getFailureException(), nullptr);
    EXPECT_EQ(builder.getFailureException()->getReason(),
              "Error in the sequence path at columns 2 to 5: The sequence path is not well formed");
    builder.reset();
    EXPECT_EQ(builder.getFailureException(), nullptr);
}

TEST(SequencePathParser, NotificationsReadNumbersAndRefuseWhatTheGrammarCannotCatch) {
    BtSequencePathBuilder builder;
    EXPECT_FALSE(builder.notifyStep("99999999999"));
    EXPECT_FALSE(builder.notifySkip("0"));
    EXPECT_TRUE(builder.notifyStartFrame("2147483640"));
    // The last frame would not fit a frame number.
    EXPECT_FALSE(builder.notifyFrameCount("10f"));
    builder.reset();
    EXPECT_TRUE(builder.notifyStartFrame("4"));
    EXPECT_TRUE(builder.notifyFrameCount("3f"));
    EXPECT_TRUE(builder.notifyStep("2"));
    EXPECT_TRUE(builder.notifyEndSequence());
    EXPECT_TRUE(builder.notifyConstant("09"));
    EXPECT_TRUE(builder.notifyEndSequence());
    builder.addToFilePath("p.");
    EXPECT_TRUE(builder.notifyRangeExists());
    EXPECT_TRUE(builder.notifyParseComplete());
    EXPECT_EQ(builder.getResult(), "p.[4:8|2,09]");
}

TEST(SequencePathParser, LongListsGrowTheParserStack) {
    // The list rule nests one level per item, far past the stack's first 200.
    std::string items;
    for (int i = 0; i < 5000; ++i)
        items += (i ? "," : "") + std::to_string(2 * i);
    EXPECT_EQ(resolveSequencePath("p.[" + items + "].exr"), "p.[" + items + "].exr");
}

TEST(SequencePathParser, ThreadsResolvingAtOnceEachGetTheirOwnResult) {
    constexpr int THREADS = 8;
    constexpr int REPEATS = 200;
    // Every result of every thread, each checked against what its thread expects.
    std::vector<std::vector<std::string>> results(THREADS);
    std::vector<std::thread> threads;
    for (int t = 0; t < THREADS; ++t)
        threads.emplace_back([t, &results] {
            std::string const text = "p" + std::to_string(t) + ".[" + std::to_string(t) + "/3f|2].exr";
            for (int i = 0; i < REPEATS; ++i)
                results[t].push_back(resolveSequencePath(text));
        });
    for (std::thread& thread : threads)
        thread.join();
    for (int t = 0; t < THREADS; ++t) {
        std::string const expected =
            "p" + std::to_string(t) + ".[" + std::to_string(t) + ":" + std::to_string(t + 4) + "|2].exr";
        EXPECT_THAT(results[t], ::testing::AllOf(::testing::SizeIs(REPEATS), ::testing::Each(expected)))
            << "thread " << t;
    }
}

} // namespace
