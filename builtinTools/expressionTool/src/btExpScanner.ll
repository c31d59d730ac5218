/* The tokens of the expression language. The longest match wins, then the
   earlier rule; keep the rules in this order. Blanks are name characters, so
   names and references take trailing blanks with them, a constant followed by
   a blank is a name, and "1.5 " is a reference: stored expressions rely on it.
   Leading blanks join a reference only before a letter or an underscore, so
   that the blank in "2 + 1.5" or "f(1, 0.5)" does not turn the number into one. */
%option reentrant noyywrap nounput noinput never-interactive 8bit nodefault warn stack
%option prefix="btExp"
%option extra-type="Qv::BtExpScannerStreams*"

%{
#include "btExpScannerControl.h"

#include <istream>
#include <memory>
#include <new>
#include <string_view>
#include <vector>

namespace Qv {
// The stream of the parse at hand, and those of the parses it interrupted.
struct BtExpScannerStreams {
    std::istream* current = nullptr;
    std::vector<std::istream*> saved;
};
} // namespace Qv

namespace {
Qv::LiString const PI_TEXT("3.14159265358979323846264338327950");
Qv::LiString const E_TEXT("2.71828182845904523536028747135266");
Qv::LiString const TIME_TEXT("t");
Qv::LiString const TRUE_TEXT("1.0");
Qv::LiString const FALSE_TEXT("0.0");
} // namespace

#define YY_DECL int btExplex(BTEXPSTYPE* value, BTEXPLTYPE* location, yyscan_t yyscanner)
#define YY_INPUT(buffer, result, size)                                                                      \
    do {                                                                                                     \
        yyextra->current->read(buffer, static_cast<std::streamsize>(size));                                 \
        result = static_cast<int>(yyextra->current->gcount());                                               \
    } while (false)
// Every match moves the columns on, skipped white space included.
#define YY_USER_ACTION                                                                                       \
    location->first_column = location->last_column;                                                          \
    location->last_column += static_cast<int>(yyleng);
#define TOKEN(code)                                                                                          \
    do {                                                                                                     \
        *value = Qv::LiString(std::string_view(yytext, yyleng));                                             \
        return BT_EXP_##code;                                                                                \
    } while (false)
#define CONSTANT(code, text)                                                                                 \
    do {                                                                                                     \
        *value = text;                                                                                       \
        return BT_EXP_##code;                                                                                \
    } while (false)
%}

C        [ 0-9A-Za-z_]
LETTER   [A-Za-z_]
ITEM     ({C}|"("{C}+")"|{C}"&"{C})
SEGMENT  {C}{ITEM}*
/* The first segment: blanks, when it starts with them, are followed by a
   letter, which may carry an "&" item as any character after the first may. */
FIRST    ([0-9A-Za-z_]{ITEM}*|" "+({LETTER}|{LETTER}"&"{C}){ITEM}*)

%%

[ \t\n]+                        { }
[0-9]+                          { TOKEN(NUMBER); }
[0-9]+"."[0-9]*|"."[0-9]+       { TOKEN(NUMBER); }
"PI"                            { CONSTANT(NUMBER, PI_TEXT); }
"Pi"                            { CONSTANT(NUMBER, PI_TEXT); }
"pI"                            { CONSTANT(NUMBER, PI_TEXT); }
"pi"                            { CONSTANT(NUMBER, PI_TEXT); }
"E"                             { CONSTANT(NUMBER, E_TEXT); }
"e"                             { CONSTANT(NUMBER, E_TEXT); }
"T"                             { CONSTANT(TIME_NAME, TIME_TEXT); }
"t"                             { CONSTANT(TIME_NAME, TIME_TEXT); }
"TRUE"                          { CONSTANT(NUMBER, TRUE_TEXT); }
"FALSE"                         { CONSTANT(NUMBER, FALSE_TEXT); }
{FIRST}("."{SEGMENT})+          { TOKEN(REFERENCE); }
[A-Za-z_]{C}*                   { TOKEN(NAME); }
[0-9]+[A-Za-z_][0-9A-Za-z_]*    { TOKEN(DIGIT_NAME); }
"("                             { TOKEN(LPAREN); }
")"                             { TOKEN(RPAREN); }
","                             { TOKEN(COMMA); }
"+"                             { TOKEN(PLUS); }
"-"                             { TOKEN(MINUS); }
"*"                             { TOKEN(MULOP); }
"/"                             { TOKEN(MULOP); }
"^"                             { TOKEN(MULOP); }
"%"                             { TOKEN(MULOP); }
"=="                            { TOKEN(CMPOP); }
"!="                            { TOKEN(CMPOP); }
"<"                             { TOKEN(CMPOP); }
"<="                            { TOKEN(CMPOP); }
">"                             { TOKEN(CMPOP); }
">="                            { TOKEN(CMPOP); }
"&&"                            { TOKEN(BOOLOP); }
"||"                            { TOKEN(BOOLOP); }
"!"                             { TOKEN(NOT); }
.|\n                            { TOKEN(UNKNOWN); }

%%

namespace Qv::BtExpScannerControl {

namespace {
constexpr int BUFFER_SIZE = 16384; // flex adds its two end-of-buffer bytes
} // namespace

yyscan_t create() {
    yyscan_t scanner = nullptr;
    auto streams = std::make_unique<BtExpScannerStreams>();
    if (btExplex_init_extra(streams.get(), &scanner) != 0)
        throw std::bad_alloc();
    streams.release();
    return scanner;
}

void destroy(yyscan_t scanner) {
    delete btExpget_extra(scanner);
    btExplex_destroy(scanner);
}

void pushInput(yyscan_t scanner, std::istream& input) {
    struct yyguts_t* yyg = static_cast<struct yyguts_t*>(scanner);
    yyextra->saved.push_back(yyextra->current);
    yyextra->current = &input;
    btExppush_buffer_state(btExp_create_buffer(nullptr, BUFFER_SIZE, scanner), scanner);
    yy_push_state(INITIAL, scanner);
}

void popInput(yyscan_t scanner) {
    struct yyguts_t* yyg = static_cast<struct yyguts_t*>(scanner);
    yy_pop_state(scanner);
    btExppop_buffer_state(scanner);
    yyextra->current = yyextra->saved.back();
    yyextra->saved.pop_back();
}

} // namespace Qv::BtExpScannerControl
