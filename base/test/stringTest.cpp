#include "baseTestHelpers.h"
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
using namespace Qv::TestHelpers;

namespace {

TEST(LiStringTest, ComparesAndHashesLikeStdStringWithNullAsEmpty) {
    LiString const name("Output Image");
    EXPECT_LT(LiString("Alpha"), "Beta");
    EXPECT_EQ(std::hash<LiString>{}(name), std::hash<std::string>{}("Output Image"));
    std::unordered_set<LiString> set{LiString(), LiString(static_cast<char const*>(nullptr)), LiString("")};
    EXPECT_EQ(set.size(), 1u);
    EXPECT_STREQ(LiString().c_str(), "");
}

TEST(LiStringUtilTest, CaseAndTrimTouchAsciiOnly) {
    EXPECT_EQ(LiStringUtil::toLowerCase("NoiSe3 Ä"), "noise3 Ä");
    EXPECT_EQ(LiStringUtil::toUpperCase("mov"), "MOV");
    for (auto [text, trimmed] :
         {std::pair{"  Blur 1 . Radius \t", "Blur 1 . Radius"}, {"\r\n x\n", "x"}, {"   ", ""}, {"", ""}})
        EXPECT_EQ(LiStringUtil::trimLeadingAndTrailingSpaces(text), trimmed) << '"' << text << '"';
}

TEST(LiStringUtilTest, SubstituteReplacesEveryOccurrenceOnce) {
    EXPECT_EQ(LiStringUtil::substitute("/r/<FrameNo>_<FrameNo>.exr", "<FrameNo>", "#"), "/r/#_#.exr");
    EXPECT_EQ(LiStringUtil::substitute("aaa", "aa", "b"), "ba") << "no overlapping matches";
    EXPECT_EQ(LiStringUtil::substitute("x", "x", "xx"), "xx") << "a replacement is not searched again";
    EXPECT_EQ(LiStringUtil::substitute("", "a", "b"), "");
    EXPECT_THROW(LiStringUtil::substitute("abc", "", "x"), LiStringEx::ExInvalidArgument);
}

TEST(LiStringUtilTest, NumbersReadAndWriteInTheClassicLocale) {
    EXPECT_EQ(LiStringUtil::convertNb(9000000000LL), "9000000000");
    EXPECT_EQ(LiStringUtil::convertNb(1.0), "1");
    EXPECT_EQ(LiStringUtil::convertToDouble(LiStringUtil::convertNb(1.0 / 3.0)), 1.0 / 3.0);
    EXPECT_THROW(LiStringUtil::convertToDouble("1,5"), LiStringEx::ExBadNumber);
    struct Case {
        char const* text;
        std::optional<int> value;
    } const cases[] = {{"007", 7},           {"-3", -3},           {"2147483647", 2147483647},
                       {" 1", std::nullopt}, {"+1", std::nullopt}, {"2147483648", std::nullopt},
                       {"", std::nullopt},   {"1a", std::nullopt}, {"1.5", std::nullopt}};
    for (auto const& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(LiStringUtil::tryConvertToInt(c.text), c.value);
        if (c.value)
            EXPECT_EQ(LiStringUtil::convertToInt(c.text), *c.value);
        else
            EXPECT_TRUE(throwsWith<LiStringEx::ExBadNumber>([&] { LiStringUtil::convertToInt(c.text); },
                                                            '"' + std::string(c.text) + '"'));
    }
}

TEST(LiStringUtilTest, SanitizedComponentNamesAreUsableFileNames) {
    for (auto [name, expected] :
         {std::pair{"a/b\\c:d?*\"<>|\tx", "a_b_c_d_______x"}, {"  shot 1. ", "shot 1"}, {"..", ""}})
        EXPECT_EQ(LiStringUtil::sanitizeComponentName(name, '_'), expected) << '"' << name << '"';
    EXPECT_EQ(LiStringUtil::sanitizeComponentName("v2.final", LiStringUtil::getReplacementChar()),
              "v2.final");
}

TEST(LiStringTokenizerTest, NotEmptySkipsWhatKeepEmptyReports) {
    using Tokens = std::vector<std::string>;
    struct Case {
        char const *text, *delimiters;
        Tokens keepEmpty, notEmpty;
    } const cases[] = {{"a,,b", ",", {"a", "", "b"}, {"a", "b"}},
                       {",a,", ",", {"", "a", ""}, {"a"}},
                       {"", ",", {""}, {}},
                       {",,", ",", {"", "", ""}, {}},
                       {"1-5, 7", ", -", {"1", "5", "", "7"}, {"1", "5", "7"}},
                       {"whole", "", {"whole"}, {"whole"}}};
    for (auto const& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(LiStringTokenizer(c.text, c.delimiters).getRemainingTokens(), c.keepEmpty);
        EXPECT_EQ(LiStringTokenizer(c.text, c.delimiters, LiStringTokenizer::NotEmpty).getRemainingTokens(),
                  c.notEmpty);
        EXPECT_EQ(LiStringUtil::split(c.text, c.delimiters), c.keepEmpty);
    }
    LiStringTokenizer tokens("a", "/");
    EXPECT_EQ(tokens.nextToken(), "a");
    EXPECT_THROW(tokens.nextToken(), LiStringEx::ExNoMoreTokens);
}

TEST(LiStringParserTest, SplitsAtTheFirstSeparator) {
    std::string head = "stale", rest = "stale";
    EXPECT_FALSE(LiStringParser::splitString("Radius", ".", head, rest));
    EXPECT_EQ(head + "|" + rest, "|Radius");
    EXPECT_TRUE(LiStringParser::splitString("a::b::c", "::", head, rest));
    EXPECT_EQ(head + "|" + rest, "a|b::c");
    rest = ".x.y";
    EXPECT_TRUE(LiStringParser::splitString(rest, ".", head, rest)); // text may be one of the outputs
    EXPECT_EQ(head + "|" + rest, "|x.y");
    EXPECT_THROW(LiStringParser::splitString("a", "", head, rest), LiStringEx::ExInvalidArgument);
}

struct NameToken {
    int calls = 0;
    void fill(std::string& text) { ++calls, text = "shot010"; }
};

TEST(LiStringSubstituterTest, ReplacesTokensByHandlerOutput) {
    NameToken comp;
    CbMethod<NameToken, std::string> compHandler(&comp, &NameToken::fill);
    LiStringSubstituter substituter;
    substituter.addPattern("<CompName>", &compHandler);
    substituter.addPattern("<Comp>", [](std::string& text) { text = "C"; });
    substituter.addPattern("<Echo>", [](std::string& text) { text = text + "!"; });
    substituter.addPattern("<Loop>", [](std::string& text) { text = "<Loop>"; });
    // The longest token at a place wins, a handler sees the token it replaces, output is not searched again.
    std::pair<char const*, char const*> const cases[] = {
        {"/r/<CompName>/<CompName>_<FrameNo>", "/r/shot010/shot010_<FrameNo>"},
        {"<Comp><CompName>", "Cshot010"},
        {"<Echo>", "<Echo>!"},
        {"<Loop><Loop>", "<Loop><Loop>"},
        {"a<b", "a<b"}};
    for (auto [text, expected] : cases)
        EXPECT_EQ(substituter.substitute(text), expected) << text;
    EXPECT_EQ(comp.calls, 3); // once per occurrence

    auto const handler = [](std::string&) {};
    EXPECT_THROW(substituter.addPattern("<Echo>", handler), LiStringEx::ExInvalidArgument);
    EXPECT_THROW(substituter.addPattern("<T>", LiStringSubstituter::Handler()),
                 LiStringEx::ExInvalidArgument);
    EXPECT_THROW(substituter.addPattern("<T>", static_cast<CbHandler<std::string>*>(nullptr)),
                 LiStringEx::ExInvalidArgument);
}

} // namespace
