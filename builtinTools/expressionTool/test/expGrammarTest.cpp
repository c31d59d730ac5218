// What the grammar makes of texts, as the calls a listener hears in order:
// precedence and grouping, vectors and groups, calls, the separation of
// conditions from arithmetic, and every way a text is refused, with columns.
#include "btExpTraceReport.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using Calls = std::vector<std::string>;

Qv::BtExpTraceReport trace(std::string const& text) {
    Qv::BtExpTraceReport report;
    btTraceExpression(text, report);
    return report;
}

struct Accepted {
    char const* text;
    Calls calls;
};

class AcceptedTexts : public ::testing::TestWithParam<Accepted> {};

TEST_P(AcceptedTexts, AreHeardInPostOrder) {
    Qv::BtExpTraceReport const report = trace(GetParam().text);
    EXPECT_TRUE(report.accepted) << GetParam().text << ": " << report.reason;
    EXPECT_EQ(report.calls, GetParam().calls) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(
    Precedence, AcceptedTexts,
    ::testing::Values(
        // "^" is on the level of "*" and groups to the left: 2^3^2 is (2^3)^2, 2*3^2 is (2*3)^2.
        Accepted{"2^3^2",
                 {"onConstant \"2\" 1 2", "onConstant \"3\" 3 4", "onBinaryOperator \"^\" 2 3",
                  "onConstant \"2\" 5 6", "onBinaryOperator \"^\" 4 5"}},
        Accepted{"2*3^2",
                 {"onConstant \"2\" 1 2", "onConstant \"3\" 3 4", "onBinaryOperator \"*\" 2 3",
                  "onConstant \"2\" 5 6", "onBinaryOperator \"^\" 4 5"}},
        Accepted{"1+2*3",
                 {"onConstant \"1\" 1 2", "onConstant \"2\" 3 4", "onConstant \"3\" 5 6",
                  "onBinaryOperator \"*\" 4 5", "onBinaryOperator \"+\" 2 3"}},
        Accepted{"1-2-3",
                 {"onConstant \"1\" 1 2", "onConstant \"2\" 3 4", "onBinaryOperator \"-\" 2 3",
                  "onConstant \"3\" 5 6", "onBinaryOperator \"-\" 4 5"}},
        // Unary minus is looser than "*": -2^2 is -(2^2), -a*b is -(a*b).
        Accepted{"-2^2",
                 {"onConstant \"2\" 2 3", "onConstant \"2\" 4 5", "onBinaryOperator \"^\" 3 4",
                  "onUnaryOperator \"-\" 1 2"}},
        Accepted{"-a*b",
                 {"onAttribute \"a\" 2 3", "onAttribute \"b\" 4 5", "onBinaryOperator \"*\" 3 4",
                  "onUnaryOperator \"-\" 1 2"}},
        Accepted{"-1+2",
                 {"onConstant \"1\" 2 3", "onUnaryOperator \"-\" 1 2", "onConstant \"2\" 4 5",
                  "onBinaryOperator \"+\" 3 4"}},
        // A sign after an operator; unary plus is dropped.
        Accepted{"2*-3",
                 {"onConstant \"2\" 1 2", "onConstant \"3\" 4 5", "onUnaryOperator \"-\" 3 4",
                  "onBinaryOperator \"*\" 2 3"}},
        Accepted{"a - -b",
                 {"onAttribute \"a \" 1 3", "onAttribute \"b\" 6 7", "onUnaryOperator \"-\" 5 6",
                  "onBinaryOperator \"-\" 3 4"}},
        Accepted{"+1", {"onConstant \"1\" 2 3"}},
        // "&&" and "||" share a level and group to the left; "!" binds tighter.
        Accepted{"a<b || c<d && f<g",
                 {"onAttribute \"a\" 1 2", "onAttribute \"b \" 3 5", "onComparison \"<\" 2 3",
                  "onAttribute \"c\" 8 9", "onAttribute \"d \" 10 12", "onComparison \"<\" 9 10",
                  "onBooleanBinaryOperator \"||\" 5 7", "onAttribute \"f\" 15 16", "onAttribute \"g\" 17 18",
                  "onComparison \"<\" 16 17", "onBooleanBinaryOperator \"&&\" 12 14"}},
        Accepted{"!a<b&&c>d",
                 {"onAttribute \"a\" 2 3", "onAttribute \"b\" 4 5", "onComparison \"<\" 3 4",
                  "onBooleanUnaryOperator \"!\" 1 2", "onAttribute \"c\" 7 8", "onAttribute \"d\" 9 10",
                  "onComparison \">\" 8 9", "onBooleanBinaryOperator \"&&\" 5 7"}},
        Accepted{"!(a<b)",
                 {"onAttribute \"a\" 3 4", "onAttribute \"b\" 5 6", "onComparison \"<\" 4 5",
                  "onBooleanUnaryOperator \"!\" 1 2"}}));

INSTANTIATE_TEST_SUITE_P(
    Brackets, AcceptedTexts,
    ::testing::Values(
        // One item is a group, two a 2D vector, three a 3D vector. A vector
        // hears the text of each component's first token.
        Accepted{"((1))", {"onConstant \"1\" 3 4"}},
        Accepted{"(1,2)", {"onConstant \"1\" 2 3", "onConstant \"2\" 4 5", "onVector2 \"1\" \"2\" 1 6"}},
        Accepted{"(1,2,3)",
                 {"onConstant \"1\" 2 3", "onConstant \"2\" 4 5", "onConstant \"3\" 6 7",
                  "onVector3 \"1\" \"2\" \"3\" 1 8"}},
        Accepted{"(a+1, -b)",
                 {"onAttribute \"a\" 2 3", "onConstant \"1\" 4 5", "onBinaryOperator \"+\" 3 4",
                  "onAttribute \"b\" 8 9", "onUnaryOperator \"-\" 7 8", "onVector2 \"a\" \"-\" 1 10"}},
        Accepted{"2*(1,2)",
                 {"onConstant \"2\" 1 2", "onConstant \"1\" 4 5", "onConstant \"2\" 6 7",
                  "onVector2 \"1\" \"2\" 3 8", "onBinaryOperator \"*\" 2 3"}},
        Accepted{"((a<b))", {"onAttribute \"a\" 3 4", "onAttribute \"b\" 5 6", "onComparison \"<\" 4 5"}}));

INSTANTIATE_TEST_SUITE_P(
    Operands, AcceptedTexts,
    ::testing::Values(
        // Constants, names, digit names and references, untrimmed.
        Accepted{"TRUE+1", {"onConstant \"1.0\" 1 5", "onConstant \"1\" 6 7", "onBinaryOperator \"+\" 5 6"}},
        Accepted{"1.5 + 2",
                 {"onAttribute \"1.5 \" 1 5", "onConstant \"2\" 7 8", "onBinaryOperator \"+\" 5 6"}},
        Accepted{"2 + 1.5", {"onConstant \"2\" 1 2", "onConstant \"1.5\" 5 8", "onBinaryOperator \"+\" 3 4"}},
        Accepted{"turbulence(1.3, 0.4)",
                 {"onConstant \"1.3\" 12 15", "onConstant \"0.4\" 17 20", "onFunction2 \"turbulence\" 1 21"}},
        Accepted{"(1, -2.5, .5)",
                 {"onConstant \"1\" 2 3", "onConstant \"2.5\" 6 9", "onUnaryOperator \"-\" 5 6",
                  "onConstant \".5\" 11 13", "onVector3 \"1\" \"-\" \".5\" 1 14"}},
        Accepted{"pi * 2", {"onAttribute \"pi \" 1 4", "onConstant \"2\" 6 7", "onBinaryOperator \"*\" 4 5"}},
        Accepted{"2 * Node.Value",
                 {"onConstant \"2\" 1 2", "onAttribute \" Node.Value\" 4 15", "onBinaryOperator \"*\" 3 4"}},
        Accepted{"Group 1.Blur(2).Radius/2",
                 {"onAttribute \"Group 1.Blur(2).Radius\" 1 23", "onConstant \"2\" 24 25",
                  "onBinaryOperator \"/\" 23 24"}},
        // Calls of zero to four arguments: the name's first column, the call's last.
        Accepted{"t", {"onFunction0 \"t\" 1 2"}},
        Accepted{"T*2", {"onFunction0 \"t\" 1 2", "onConstant \"2\" 3 4", "onBinaryOperator \"*\" 2 3"}},
        Accepted{"foo()", {"onFunction0 \"foo\" 1 6"}},
        Accepted{"Sin(1)", {"onConstant \"1\" 5 6", "onFunction1 \"Sin\" 1 7"}},
        Accepted{"sin (x)", {"onAttribute \"x\" 6 7", "onFunction1 \"sin \" 1 8"}},
        Accepted{"max(1, t)", {"onConstant \"1\" 5 6", "onFunction0 \"t\" 8 9", "onFunction2 \"max\" 1 10"}},
        Accepted{"if(a<b, 1, 2)",
                 {"onAttribute \"a\" 4 5", "onAttribute \"b\" 6 7", "onComparison \"<\" 5 6",
                  "onConstant \"1\" 9 10", "onConstant \"2\" 12 13", "onFunction3 \"if\" 1 14"}},
        Accepted{"f(1,2,3,4)",
                 {"onConstant \"1\" 3 4", "onConstant \"2\" 5 6", "onConstant \"3\" 7 8",
                  "onConstant \"4\" 9 10", "onFunction4 \"f\" 1 11"}},
        // A condition may be the whole text or an argument.
        Accepted{"a>=b", {"onAttribute \"a\" 1 2", "onAttribute \"b\" 4 5", "onComparison \">=\" 2 4"}},
        Accepted{"g(!(1<2))",
                 {"onConstant \"1\" 5 6", "onConstant \"2\" 7 8", "onComparison \"<\" 6 7",
                  "onBooleanUnaryOperator \"!\" 3 4", "onFunction1 \"g\" 1 10"}}));

struct Refused {
    char const* text;
    Calls calls; // heard before the failure
    int first;
    int last;
    char const* reason;
};

char const* const MALFORMED = "Syntax error: the expression is incomplete or malformed";

class RefusedTexts : public ::testing::TestWithParam<Refused> {};

TEST_P(RefusedTexts, FailWithTheColumnsOfTheOffendingToken) {
    Refused const& c = GetParam();
    Qv::BtExpTraceReport const report = trace(c.text);
    EXPECT_FALSE(report.accepted) << c.text;
    EXPECT_EQ(report.calls, c.calls) << c.text;
    EXPECT_EQ(report.firstColumn, c.first) << c.text;
    EXPECT_EQ(report.lastColumn, c.last) << c.text;
    EXPECT_EQ(report.reason, c.reason) << c.text;
}

INSTANTIATE_TEST_SUITE_P(
    Malformed, RefusedTexts,
    ::testing::Values(
        // There is no empty expression; the end of the text keeps the columns of the last match.
        Refused{"", {}, 1, 1, MALFORMED}, Refused{"  ", {}, 1, 3, MALFORMED},
        Refused{"1+", {"onConstant \"1\" 1 2"}, 2, 3, MALFORMED}, Refused{")", {}, 1, 2, MALFORMED},
        Refused{"1 2", {"onConstant \"1\" 1 2"}, 3, 4, MALFORMED},
        // The time variable is a complete call already.
        Refused{"t()", {"onFunction0 \"t\" 1 2"}, 2, 3, MALFORMED},
        Refused{"T(1)", {"onFunction0 \"t\" 1 2"}, 2, 3, MALFORMED},
        // Brackets of four items, calls of five arguments.
        Refused{"(1,2,3,4)",
                {"onConstant \"1\" 2 3", "onConstant \"2\" 4 5", "onConstant \"3\" 6 7"},
                7,
                8,
                MALFORMED},
        Refused{
            "f(1,2,3,4,5)",
            {"onConstant \"1\" 3 4", "onConstant \"2\" 5 6", "onConstant \"3\" 7 8", "onConstant \"4\" 9 10"},
            10,
            11,
            MALFORMED},
        // Comparisons do not chain, and conditions and arithmetic do not mix.
        Refused{"a<b<c",
                {"onAttribute \"a\" 1 2", "onAttribute \"b\" 3 4", "onComparison \"<\" 2 3"},
                4,
                5,
                MALFORMED},
        Refused{"!1", {"onConstant \"1\" 2 3"}, 2, 3, MALFORMED},
        Refused{"1&&2", {"onConstant \"1\" 1 2"}, 2, 4, MALFORMED},
        Refused{"x && y", {"onAttribute \"x \" 1 3"}, 3, 5, MALFORMED},
        Refused{"-(a<b)", {"onAttribute \"a\" 3 4"}, 4, 5, MALFORMED},
        Refused{"(a<b)+1",
                {"onAttribute \"a\" 2 3", "onAttribute \"b\" 4 5", "onComparison \"<\" 3 4"},
                6,
                7,
                MALFORMED},
        Refused{"2*(a<b)", {"onConstant \"2\" 1 2", "onAttribute \"a\" 4 5"}, 5, 6, MALFORMED},
        Refused{"(1, a<b)", {"onConstant \"1\" 2 3", "onAttribute \"a\" 5 6"}, 6, 7, MALFORMED},
        // A character of no token after an operator is an ordinary parse error.
        Refused{"2*$", {"onConstant \"2\" 1 2"}, 3, 4, MALFORMED}));

INSTANTIATE_TEST_SUITE_P(
    UnknownCharacters, RefusedTexts,
    ::testing::Values(
        // Where a whole expression or argument may stand, or right before or
        // after one, the character itself is reported.
        Refused{"$", {"onUnknownToken \"$\" 1 2"}, 1, 2, "Syntax error: unexpected character \"$\""},
        Refused{"1 $",
                {"onConstant \"1\" 1 2", "onUnknownToken \"$\" 3 4"},
                3,
                4,
                "Syntax error: unexpected character \"$\""},
        Refused{"#1", {"onUnknownToken \"#\" 1 2"}, 1, 2, "Syntax error: unexpected character \"#\""},
        Refused{"a&b.c",
                {"onAttribute \"a\" 1 2", "onUnknownToken \"&\" 2 3"},
                2,
                3,
                "Syntax error: unexpected character \"&\""},
        Refused{"f(1, ?)",
                {"onConstant \"1\" 3 4", "onUnknownToken \"?\" 6 7"},
                6,
                7,
                "Syntax error: unexpected character \"?\""},
        Refused{"a<b \"",
                {"onAttribute \"a\" 1 2", "onAttribute \"b \" 3 5", "onComparison \"<\" 2 3",
                 "onUnknownToken \"\"\" 5 6"},
                5,
                6,
                "Syntax error: unexpected character \"\"\""}));

} // namespace
