/* The tokens of the bracket of a sequence path. Longest match wins, then the
   earlier rule; '-' and '.' are ordinary "other" characters. */
%option reentrant noyywrap nounput noinput never-interactive batch 8bit nodefault warn
%option prefix="btSequencePath"
%option extra-type="Qv::BtSequencePathGrammarContext*"

%{
#include "btSequencePathGrammar.h"

using Parser = Qv::BtSequencePathGrammar::Parser;

#define YY_DECL Parser::symbol_type btSequencePathLex(yyscan_t yyscanner)
// Each token starts where the previous one ended.
#define YY_USER_ACTION                                                                 \
    yyextra->lastBegin = yyextra->lastEnd;                                             \
    yyextra->lastEnd += static_cast<int>(yyleng);
#define LOC Parser::location_type(Qv::BtSequencePathGrammar::position(nullptr, 1, yyextra->lastBegin), \
                                  Qv::BtSequencePathGrammar::position(nullptr, 1, yyextra->lastEnd))
%}

%%

[ \t\n]+     { }
[0-9]+f      { return Parser::make_FRAMECOUNT(std::string(yytext, yyleng), LOC); }
[0-9]+       { return Parser::make_NUMBER(std::string(yytext, yyleng), LOC); }
"#"          { return Parser::make_ALLFRAMES(std::string(yytext, yyleng), LOC); }
"["          { return Parser::make_LBRACKET(LOC); }
"]"          { return Parser::make_RBRACKET(LOC); }
":"          { return Parser::make_COLON(LOC); }
"|"          { return Parser::make_BAR(LOC); }
","          { return Parser::make_COMMA(LOC); }
"*f"         { return Parser::make_ALLCOUNT(LOC); }
"+"          { return Parser::make_PLUS(LOC); }
"/"          { return Parser::make_SLASH(LOC); }
.|\n         { return Parser::make_OTHER(std::string(yytext, yyleng), LOC); }
<<EOF>>      { return Parser::make_YYEOF(LOC); }

%%
