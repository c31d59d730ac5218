// The tokens of the expression language straight from the scanner: codes,
// texts and columns, with the quirks of longest match that stored
// expressions depend on.
#include "btExpScannerControl.h"

#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace {

std::string nameOf(int code) {
    static std::map<int, std::string> const names = {
        {0, "END"},         {258, "NUMBER"},    {259, "NAME"},   {260, "DIGIT_NAME"},
        {261, "TIME_NAME"}, {262, "REFERENCE"}, {263, "LPAREN"}, {264, "RPAREN"},
        {265, "COMMA"},     {266, "PLUS"},      {267, "MINUS"},  {268, "MULOP"},
        {270, "BOOLOP"},    {271, "NOT"},       {272, "CMPOP"},  {273, "UNKNOWN"}};
    auto const found = names.find(code);
    return found == names.end() ? std::to_string(code) : found->second;
}

// Every token of a text, "CODE "text" first last", the end as "END first last".
std::vector<std::string> scan(std::string const& text) {
    yyscan_t scanner = Qv::BtExpScannerControl::create();
    std::istringstream input(text);
    Qv::BtExpScannerControl::pushInput(scanner, input);
    BTEXPLTYPE location{1, 1, 1, 1};
    std::vector<std::string> tokens;
    for (;;) {
        BTEXPSTYPE value;
        int const code = btExplex(&value, &location, scanner);
        std::string token = nameOf(code);
        if (code != 0)
            token += " \"" + value.toString() + "\"";
        tokens.push_back(token + " " + std::to_string(location.first_column) + " " +
                         std::to_string(location.last_column));
        if (code == 0 || tokens.size() > 100)
            break;
    }
    Qv::BtExpScannerControl::popInput(scanner);
    Qv::BtExpScannerControl::destroy(scanner);
    return tokens;
}

struct Scanned {
    std::string text;
    std::vector<std::string> tokens;
};

class Scanner : public ::testing::TestWithParam<Scanned> {};

TEST_P(Scanner, GivesTheTokensOfTheLongestMatches) {
    EXPECT_EQ(scan(GetParam().text), GetParam().tokens) << GetParam().text;
}

char const* const PI = "\"3.14159265358979323846264338327950\"";
char const* const E = "\"2.71828182845904523536028747135266\"";

std::string pi(int first, int last) {
    return std::string("NUMBER ") + PI + " " + std::to_string(first) + " " + std::to_string(last);
}

INSTANTIATE_TEST_SUITE_P(
    Tokens, Scanner,
    ::testing::Values(
        // Columns start at 1; skipped white space moves them on, and the end of
        // the text keeps those of the last match.
        Scanned{"", {"END 1 1"}}, Scanned{" \t\n", {"END 1 4"}},
        Scanned{"1+2", {"NUMBER \"1\" 1 2", "PLUS \"+\" 2 3", "NUMBER \"2\" 3 4", "END 3 4"}},
        Scanned{"\t12 + 3", {"NUMBER \"12\" 2 4", "PLUS \"+\" 5 6", "NUMBER \"3\" 7 8", "END 7 8"}},
        Scanned{"abc  ", {"NAME \"abc  \" 1 6", "END 1 6"}},
        // Numbers: a fraction needs a digit on one side of the point; no exponent.
        Scanned{"1.5+2", {"NUMBER \"1.5\" 1 4", "PLUS \"+\" 4 5", "NUMBER \"2\" 5 6", "END 5 6"}},
        Scanned{"1.", {"NUMBER \"1.\" 1 3", "END 1 3"}},
        Scanned{".5 + 2", {"NUMBER \".5\" 1 3", "PLUS \"+\" 4 5", "NUMBER \"2\" 6 7", "END 6 7"}},
        Scanned{"1e3", {"DIGIT_NAME \"1e3\" 1 4", "END 1 4"}},
        Scanned{"2pi ", {"DIGIT_NAME \"2pi\" 1 4", "END 4 5"}},
        // A fraction followed by a blank is a reference, a whole number is not.
        Scanned{"1.5 +2", {"REFERENCE \"1.5 \" 1 5", "PLUS \"+\" 5 6", "NUMBER \"2\" 6 7", "END 6 7"}},
        Scanned{"1.5 + 2", {"REFERENCE \"1.5 \" 1 5", "PLUS \"+\" 5 6", "NUMBER \"2\" 7 8", "END 7 8"}},
        Scanned{"12 a.b", {"REFERENCE \"12 a.b\" 1 7", "END 1 7"}},
        // A blank before a number is skipped: it does not start a reference.
        Scanned{"2 + 1.5", {"NUMBER \"2\" 1 2", "PLUS \"+\" 3 4", "NUMBER \"1.5\" 5 8", "END 5 8"}},
        Scanned{"f(1, 0.4)",
                {"NAME \"f\" 1 2", "LPAREN \"(\" 2 3", "NUMBER \"1\" 3 4", "COMMA \",\" 4 5",
                 "NUMBER \"0.4\" 6 9", "RPAREN \")\" 9 10", "END 9 10"}},
        Scanned{"( .5)", {"LPAREN \"(\" 1 2", "NUMBER \".5\" 3 5", "RPAREN \")\" 5 6", "END 5 6"}},
        Scanned{"*  12 a.b", {"MULOP \"*\" 1 2", "REFERENCE \"12 a.b\" 4 10", "END 4 10"}},
        Scanned{"1, 2.5 ", {"NUMBER \"1\" 1 2", "COMMA \",\" 2 3", "REFERENCE \"2.5 \" 4 8", "END 4 8"}},
        // Constants and time only when no name character follows.
        Scanned{"pi", {pi(1, 3), "END 1 3"}}, Scanned{"Pi", {pi(1, 3), "END 1 3"}},
        Scanned{"pI", {pi(1, 3), "END 1 3"}}, Scanned{"PI", {pi(1, 3), "END 1 3"}},
        Scanned{"pi*2", {pi(1, 3), "MULOP \"*\" 3 4", "NUMBER \"2\" 4 5", "END 4 5"}},
        Scanned{"pi * 2", {"NAME \"pi \" 1 4", "MULOP \"*\" 4 5", "NUMBER \"2\" 6 7", "END 6 7"}},
        Scanned{"p i", {"NAME \"p i\" 1 4", "END 1 4"}},
        Scanned{"e+E",
                {std::string("NUMBER ") + E + " 1 2", "PLUS \"+\" 2 3", std::string("NUMBER ") + E + " 3 4",
                 "END 3 4"}},
        Scanned{"T", {"TIME_NAME \"t\" 1 2", "END 1 2"}},
        Scanned{"(t)", {"LPAREN \"(\" 1 2", "TIME_NAME \"t\" 2 3", "RPAREN \")\" 3 4", "END 3 4"}},
        Scanned{"t + 1", {"NAME \"t \" 1 3", "PLUS \"+\" 3 4", "NUMBER \"1\" 5 6", "END 5 6"}},
        Scanned{"TRUE", {"NUMBER \"1.0\" 1 5", "END 1 5"}},
        Scanned{"FALSE", {"NUMBER \"0.0\" 1 6", "END 1 6"}},
        Scanned{"TRUE ", {"NAME \"TRUE \" 1 6", "END 1 6"}},
        Scanned{"true", {"NAME \"true\" 1 5", "END 1 5"}}, Scanned{"tx", {"NAME \"tx\" 1 3", "END 1 3"}},
        // A function name followed by a blank keeps the blank.
        Scanned{"sin (x)",
                {"NAME \"sin \" 1 5", "LPAREN \"(\" 5 6", "NAME \"x\" 6 7", "RPAREN \")\" 7 8", "END 7 8"}},
        // References: blanks, groups in parentheses and '&' after a plain character.
        Scanned{"My Node.My Attribute", {"REFERENCE \"My Node.My Attribute\" 1 21", "END 1 21"}},
        Scanned{"Group 1.Blur(2).Radius", {"REFERENCE \"Group 1.Blur(2).Radius\" 1 23", "END 1 23"}},
        // Leading blanks belong to a reference whose name starts with a letter or an underscore.
        Scanned{" a.b ", {"REFERENCE \" a.b \" 1 6", "END 1 6"}},
        Scanned{"+  _a.b", {"PLUS \"+\" 1 2", "REFERENCE \"  _a.b\" 2 8", "END 2 8"}},
        Scanned{" a&b.c", {"REFERENCE \" a&b.c\" 1 7", "END 1 7"}},
        Scanned{" &b.c", {"UNKNOWN \"&\" 2 3", "REFERENCE \"b.c\" 3 6", "END 3 6"}},
        Scanned{" 1.b", {"REFERENCE \"1.b\" 2 5", "END 2 5"}},
        Scanned{"a b.c d", {"REFERENCE \"a b.c d\" 1 8", "END 1 8"}},
        Scanned{"ab&c.d", {"REFERENCE \"ab&c.d\" 1 7", "END 1 7"}},
        Scanned{"a(b)c&d.e", {"REFERENCE \"a(b)c&d.e\" 1 10", "END 1 10"}},
        Scanned{"a&b.c", {"NAME \"a\" 1 2", "UNKNOWN \"&\" 2 3", "REFERENCE \"b.c\" 3 6", "END 3 6"}},
        Scanned{"ab&c&d.e",
                {"NAME \"ab\" 1 3", "UNKNOWN \"&\" 3 4", "NAME \"c\" 4 5", "UNKNOWN \"&\" 5 6",
                 "REFERENCE \"d.e\" 6 9", "END 6 9"}},
        Scanned{"a(b)&c.d",
                {"NAME \"a\" 1 2", "LPAREN \"(\" 2 3", "NAME \"b\" 3 4", "RPAREN \")\" 4 5",
                 "UNKNOWN \"&\" 5 6", "REFERENCE \"c.d\" 6 9", "END 6 9"}},
        Scanned{"a.b.", {"REFERENCE \"a.b\" 1 4", "UNKNOWN \".\" 4 5", "END 4 5"}},
        Scanned{"a.(b)",
                {"NAME \"a\" 1 2", "UNKNOWN \".\" 2 3", "LPAREN \"(\" 3 4", "NAME \"b\" 4 5",
                 "RPAREN \")\" 5 6", "END 5 6"}},
        // Operators, longest first.
        Scanned{"<=<>=>",
                {"CMPOP \"<=\" 1 3", "CMPOP \"<\" 3 4", "CMPOP \">=\" 4 6", "CMPOP \">\" 6 7", "END 6 7"}},
        Scanned{"==!=!", {"CMPOP \"==\" 1 3", "CMPOP \"!=\" 3 5", "NOT \"!\" 5 6", "END 5 6"}},
        Scanned{"&&||&|=",
                {"BOOLOP \"&&\" 1 3", "BOOLOP \"||\" 3 5", "UNKNOWN \"&\" 5 6", "UNKNOWN \"|\" 6 7",
                 "UNKNOWN \"=\" 7 8", "END 7 8"}},
        Scanned{"*/^%-",
                {"MULOP \"*\" 1 2", "MULOP \"/\" 2 3", "MULOP \"^\" 3 4", "MULOP \"%\" 4 5",
                 "MINUS \"-\" 5 6", "END 5 6"}},
        Scanned{"(,)", {"LPAREN \"(\" 1 2", "COMMA \",\" 2 3", "RPAREN \")\" 3 4", "END 3 4"}},
        // Any other byte is unknown on its own, including carriage return,
        // bytes above 127 and NUL.
        Scanned{"$\r\xff", {"UNKNOWN \"$\" 1 2", "UNKNOWN \"\r\" 2 3", "UNKNOWN \"\xff\" 3 4", "END 3 4"}},
        Scanned{std::string("1\0002", 3),
                {"NUMBER \"1\" 1 2", "UNKNOWN \"" + std::string(1, '\0') + "\" 2 3", "NUMBER \"2\" 3 4",
                 "END 3 4"}}));

// A text longer than the scanner's buffer is read in pieces, and a token may
// straddle two of them.
TEST(ScannerInput, ReadsTextsLongerThanItsBuffer) {
    std::string const name(20000, 'x');
    std::vector<std::string> const tokens = scan("1+" + name + "*2");
    ASSERT_EQ(tokens.size(), 6u);
    EXPECT_EQ(tokens[2], "NAME \"" + name + "\" 3 20003");
    EXPECT_EQ(tokens[4], "NUMBER \"2\" 20004 20005");
}

// The scanner's own faults end the process with flex's message and status 2.
TEST(ScannerFaultsDeathTest, AreFatal) {
    // Other tests of the program start the request manager's workers: a
    // forked child must not inherit them, so the child runs the program anew.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(Qv::BtExpScannerControl::popInput(Qv::BtExpScannerControl::create()),
                ::testing::ExitedWithCode(2), "start-condition stack underflow");
}

} // namespace
