#pragma once
// What the generated scanner and parser of the sequence path bracket share
// with BtSequencePathParser: one parse's builder and the place where it stopped.
// Each parse owns its scanner and parser state, so a parse started from inside
// another (a notification resolving a further path) leaves its caller's intact.
namespace Qv {

class BtSequencePathBuilder;

struct BtSequencePathGrammarContext {
    BtSequencePathBuilder& builder;
    // Columns (1 based, end exclusive) of the last token read.
    int lastBegin = 1;
    int lastEnd = 1;
};

} // namespace Qv
