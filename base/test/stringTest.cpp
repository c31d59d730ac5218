#include "cbHandler.h"
#include "liString.h"
#include "liStringEx.h"
#include "liStringParser.h"
#include "liStringSubstituter.h"
#include "liStringTokenizer.h"
#include "liStringUtil.h"

#include <gtest/gtest.h>
#include <unordered_set>

using namespace Qv;

namespace {

TEST(LiStringTest, CopiesShareTextAndCompareLikeStdString) {
    LiString const name("Output Image");
    LiString const copy = name;
    EXPECT_EQ(name.c_str(), copy.c_str());
    EXPECT_EQ(copy, "Output Image");
    EXPECT_EQ(copy, std::string("Output Image"));
    EXPECT_EQ("Output Image", copy);
    EXPECT_NE(copy, LiString("Output"));
    EXPECT_LT(LiString("Alpha"), LiString("Beta"));
    EXPECT_LT(LiString("Alpha"), "Beta");
    std::string const& asString = copy;
    EXPECT_EQ(asString, "Output Image");
    EXPECT_EQ(std::hash<LiString>{}(name), std::hash<std::string>{}("Output Image"));
}

TEST(LiStringTest, EmptyAndNullTextsAreTheSame) {
    LiString const none;
    LiString const fromNull(static_cast<char const*>(nullptr));
    LiString const fromEmpty("");
    EXPECT_TRUE(none.empty());
    EXPECT_STREQ(none.c_str(), "");
    EXPECT_EQ(none, fromNull);
    EXPECT_EQ(none, fromEmpty);
    EXPECT_EQ(none, static_cast<char const*>(nullptr));
    std::unordered_set<LiString> set{none, fromEmpty, LiString("x")};
    EXPECT_EQ(set.size(), 2u);
}

TEST(LiStringUtilTest, CaseAndTrimTouchAsciiOnly) {
    EXPECT_EQ(LiStringUtil::toLowerCase("NoiSe3 Ä"), "noise3 Ä");
    EXPECT_EQ(LiStringUtil::toUpperCase("mov"), "MOV");
    struct Case {
        char const* text;
        char const* trimmed;
    } const cases[] = {{"  Blur 1 . Radius \t", "Blur 1 . Radius"},
                       {"\r\n x\n", "x"},
                       {"   ", ""},
                       {"", ""},
                       {"a b", "a b"}};
    for (auto const& c : cases)
        EXPECT_EQ(LiStringUtil::trimLeadingAndTrailingSpaces(c.text), c.trimmed) << '"' << c.text << '"';
}

TEST(LiStringUtilTest, SubstituteReplacesEveryOccurrenceOnce) {
    struct Case {
        char const* text;
        char const* token;
        char const* replacement;
        char const* expected;
    } const cases[] = {
        {"/r/shot_<FrameNo>.exr", "<FrameNo>", "[0:1]", "/r/shot_[0:1].exr"},
        {"<FrameNo><FrameNo>", "<FrameNo>", "#", "##"},
        {"aaa", "aa", "b", "ba"}, // no overlapping matches
        {"x", "x", "xx", "xx"},   // a replacement is not searched again
        {"no token", "<FrameNo>", "#", "no token"},
        {"", "a", "b", ""},
    };
    for (auto const& c : cases)
        EXPECT_EQ(LiStringUtil::substitute(c.text, c.token, c.replacement), c.expected) << c.text;
    EXPECT_THROW(LiStringUtil::substitute("abc", "", "x"), LiStringEx::ExInvalidArgument);
}

TEST(LiStringUtilTest, NumbersReadAndWriteInTheClassicLocale) {
    EXPECT_EQ(LiStringUtil::convertNb(0), "0");
    EXPECT_EQ(LiStringUtil::convertNb(-42), "-42");
    EXPECT_EQ(LiStringUtil::convertNb(9000000000LL), "9000000000");
    EXPECT_EQ(LiStringUtil::convertNb(0.1), "0.1");
    EXPECT_EQ(LiStringUtil::convertNb(1.0), "1");
    EXPECT_EQ(LiStringUtil::convertToDouble(LiStringUtil::convertNb(1.0 / 3.0)), 1.0 / 3.0);

    struct Case {
        char const* text;
        std::optional<int> value;
    } const cases[] = {
        {"12", 12},
        {"007", 7},
        {"-3", -3},
        {"2147483647", 2147483647},
        {"", std::nullopt},
        {" 1", std::nullopt},
        {"1 ", std::nullopt},
        {"+1", std::nullopt},
        {"1a", std::nullopt},
        {"0x10", std::nullopt},
        {"2147483648", std::nullopt},
        {"1.5", std::nullopt},
    };
    for (auto const& c : cases) {
        EXPECT_EQ(LiStringUtil::tryConvertToInt(c.text), c.value) << '"' << c.text << '"';
        if (c.value) {
            EXPECT_EQ(LiStringUtil::convertToInt(c.text), *c.value);
        } else {
            try {
                LiStringUtil::convertToInt(c.text);
                ADD_FAILURE() << "no exception for \"" << c.text << '"';
            } catch (LiStringEx::ExBadNumber const& ex) {
                EXPECT_NE(ex.getReason().find('"' + std::string(c.text) + '"'), std::string::npos);
            }
        }
    }
    EXPECT_THROW(LiStringUtil::convertToDouble("1,5"), LiStringEx::ExBadNumber);
}

TEST(LiStringUtilTest, SanitizedComponentNamesAreUsableFileNames) {
    char const r = LiStringUtil::getReplacementChar();
    struct Case {
        char const* name;
        char const* expected;
    } const cases[] = {
        {"plate", "plate"},
        {"a/b\\c:d", "a_b_c_d"},
        {"what?*\"<>|", "what______"},
        {"  shot 1  ", "shot 1"},
        {"take.", "take"},
        {"..", ""},
        {"tab\there", "tab_here"},
        {"", ""},
        {"v2.final", "v2.final"},
    };
    for (auto const& c : cases)
        EXPECT_EQ(LiStringUtil::sanitizeComponentName(c.name, r), c.expected) << '"' << c.name << '"';
}

TEST(LiStringTokenizerTest, NotEmptySkipsWhatKeepEmptyReports) {
    using Tokens = std::vector<std::string>;
    struct Case {
        char const* text;
        char const* delimiters;
        Tokens keepEmpty;
        Tokens notEmpty;
    } const cases[] = {
        {"a,b,c", ",", {"a", "b", "c"}, {"a", "b", "c"}},
        {"a,,b", ",", {"a", "", "b"}, {"a", "b"}},
        {",a,", ",", {"", "a", ""}, {"a"}},
        {"", ",", {""}, {}},
        {",,", ",", {"", "", ""}, {}},
        {"1-5, 7", ", -", {"1", "5", "", "7"}, {"1", "5", "7"}},
        {"whole", "", {"whole"}, {"whole"}},
    };
    for (auto const& c : cases) {
        EXPECT_EQ(LiStringTokenizer(c.text, c.delimiters).getRemainingTokens(), c.keepEmpty) << c.text;
        EXPECT_EQ(LiStringTokenizer(c.text, c.delimiters, LiStringTokenizer::NotEmpty).getRemainingTokens(),
                  c.notEmpty)
            << c.text;
        EXPECT_EQ(LiStringUtil::split(c.text, c.delimiters), c.keepEmpty) << c.text;
    }
}

TEST(LiStringTokenizerTest, AskingPastTheEndThrows) {
    LiStringTokenizer tokens("a/b", "/");
    EXPECT_EQ(tokens.nextToken(), "a");
    EXPECT_EQ(tokens.nextToken(), "b");
    EXPECT_FALSE(tokens.hasMoreTokens());
    EXPECT_THROW(tokens.nextToken(), LiStringEx::ExNoMoreTokens);
}

TEST(LiStringParserTest, SplitsAtTheFirstSeparator) {
    struct Case {
        char const* text;
        char const* separator;
        bool found;
        char const* head;
        char const* rest;
    } const cases[] = {
        {"Group.Blur.Radius", ".", true, "Group", "Blur.Radius"},
        {"Radius", ".", false, "", "Radius"},
        {"Blur.", ".", true, "Blur", ""},
        {".Radius", ".", true, "", "Radius"},
        {"a::b::c", "::", true, "a", "b::c"},
        {"", ".", false, "", ""},
    };
    for (auto const& c : cases) {
        std::string head = "stale";
        std::string rest = "stale";
        EXPECT_EQ(LiStringParser::splitString(c.text, c.separator, head, rest), c.found) << c.text;
        EXPECT_EQ(head, c.head) << c.text;
        EXPECT_EQ(rest, c.rest) << c.text;
    }
    std::string head;
    std::string rest = "x.y";
    EXPECT_TRUE(LiStringParser::splitString(rest, ".", head, rest)); // text may be one of the outputs
    EXPECT_EQ(head, "x");
    EXPECT_EQ(rest, "y");
    EXPECT_THROW(LiStringParser::splitString("a", "", head, rest), LiStringEx::ExInvalidArgument);
}

struct NameToken {
    std::string name;
    int calls = 0;
    void fill(std::string& text) {
        ++calls;
        text = name;
    }
};

TEST(LiStringSubstituterTest, ReplacesTokensByHandlerOutput) {
    NameToken comp{"shot010"};
    CbMethod<NameToken, std::string> compHandler(&comp, &NameToken::fill);
    LiStringSubstituter substituter;
    substituter.addPattern("<CompName>", &compHandler);
    substituter.addPattern("<Name>", &compHandler);
    substituter.addPattern("<Comp>", [](std::string& text) { text = "C"; });
    substituter.addPattern("<Echo>", [](std::string& text) { text = text + "!"; });
    substituter.addPattern("<Loop>", [](std::string& text) { text = "<Loop>"; });

    struct Case {
        char const* text;
        char const* expected;
    } const cases[] = {
        {"/r/<CompName>/<Name>_<FrameNo>", "/r/shot010/shot010_<FrameNo>"},
        {"<Comp><CompName>", "Cshot010"}, // the longest token at a place wins
        {"<Echo>", "<Echo>!"},            // a handler sees the token it replaces
        {"<Loop><Loop>", "<Loop><Loop>"}, // output is not searched again
        {"a<b", "a<b"},
        {"", ""},
    };
    for (auto const& c : cases)
        EXPECT_EQ(substituter.substitute(c.text), c.expected) << c.text;
    EXPECT_EQ(comp.calls, 3); // once per occurrence
}

TEST(LiStringSubstituterTest, RefusesUnusablePatterns) {
    LiStringSubstituter substituter;
    auto const handler = [](std::string&) {};
    substituter.addPattern("<Date>", handler);
    EXPECT_THROW(substituter.addPattern("<Date>", handler), LiStringEx::ExInvalidArgument);
    EXPECT_THROW(substituter.addPattern("", handler), LiStringEx::ExInvalidArgument);
    EXPECT_THROW(substituter.addPattern("<Time>", LiStringSubstituter::Handler()),
                 LiStringEx::ExInvalidArgument);
    EXPECT_THROW(substituter.addPattern("<Time>", static_cast<CbHandler<std::string>*>(nullptr)),
                 LiStringEx::ExInvalidArgument);
}

} // namespace
