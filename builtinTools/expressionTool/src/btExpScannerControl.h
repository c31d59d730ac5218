#pragma once
// The scanner of the expression language as the grammar and the parse driver
// see it. One scanner serves every parse (under "ExpParserLock"), so each
// parse brackets itself with pushInput and popInput: they stack the buffer,
// the stream and the start condition of a parse already under way, which is
// what lets a listener parse another text from inside a parse.
//
// A fault of the scanner's own machinery (no memory for a buffer, a start
// condition popped from an empty stack) is fatal: flex's message on standard
// error and exit status 2.
#include "btExpGrammar.h"

#include <iosfwd>

// The next token's code (0 at the end of the text). Its text goes into value,
// its columns into location: the first becomes the previous last, and the
// last grows by the length of the match, skipped white space included.
int btExplex(BTEXPSTYPE* value, BTEXPLTYPE* location, yyscan_t scanner);

namespace Qv::BtExpScannerControl {

yyscan_t create();
void destroy(yyscan_t scanner);

// Saves the current buffer and stream, and reads input from a new buffer of
// 16384 bytes in the initial start condition. The stream is borrowed until
// the matching popInput.
void pushInput(yyscan_t scanner, std::istream& input);
// Deletes the buffer of the last pushInput and returns to the one before.
void popInput(yyscan_t scanner);

} // namespace Qv::BtExpScannerControl
