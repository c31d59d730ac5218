#pragma once
// Entry points of the sequence path language. A text is split at its first
// '[' and first ']'; the bracket goes through the grammar, the rest is taken
// literally, and the builder resolves '#' and "*f" against the directory.
//
// Threads are serialised by the process-wide recursive lock
// "SequencePathParserLock". Each parse keeps its scanner and parser state to
// itself, so a parse begun from within another (on the same thread) is safe.
//
// Failures: BtSequencePathEx::ExSyntaxError for an unbalanced bracket (a ']'
// before the first '[' is an unexpected ']') or a bracket the grammar refuses,
// with the columns (0 based, inclusive) of the text concerned;
// BtSequencePathExRethrow of a failure the builder kept;
// BtSequencePathEx::ExInternalError when the parser cannot go on;
// OsFileEx::ExInvalidPath when '#' must read a directory that is not there.
#include <string>

namespace Qv {

class BtSequencePathBuilder;

namespace BtSequencePathParser {

void parse(BtSequencePathBuilder& builder, std::string const& text);
// The canonical path of a text; "" when a wildcard selects no file.
std::string resolveSequencePath(std::string const& text);
// The whole sequence on disk that one file belongs to: "p.0007.exr" gives
// "p.[0001:0250].exr".
std::string resolveFullSequencePath(std::string const& filePath);

} // namespace BtSequencePathParser

} // namespace Qv
