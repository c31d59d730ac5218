#pragma once
// The entry point of the expression language, and its process-wide parts.
//
// Threads are serialised by the recursive lock "ExpParserLock", since one
// scanner serves every parse. A listener may start a parse of another text
// from inside a parse on the same thread: the driver stacks the scanner
// input of the parse it interrupts.
#include <iosfwd>

namespace Qv {

class BtExpParserProtocol;

// Parses the text of input for the listener: beginParse, the grammar's calls,
// endParse. Returns when the text was accepted. Otherwise throws
// BtExpExRethrow around the exception the listener kept (a syntax error,
// an unknown character, or a listener's own failure), or, when the parser
// gave up without one (more than 200 stacked symbols), BtExpEx::ExSyntaxError
// with MSG_EXPR_PARSE_ERROR at columns 1 and 1. An exception thrown by the
// listener itself passes through, and the scanner is left as it was.
void btExpParse(BtExpParserProtocol& listener, std::istream& input);

class BtExpParser {
public:
    // Subscribes the messages of the language and of the graph builders (the catalogue "expressions.msg" must
    // be open) and, the first time, creates the lock and the scanner. Parses come after this. Calls pair up:
    // the last finalize deletes lock and scanner.
    static void initialize();
    static void finalize();
};

} // namespace Qv
