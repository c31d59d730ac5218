#pragma once
// Failures of sequence paths. Every reason is a text of the catalogue
// "imageImport.msg", so their messages must be subscribed
// (BtSequencePathBuilder::initialize) before one is built.
#include "exBase.h"

#include <string>

namespace Qv {

class BtSequencePathEx : public ExBase {
public:
    using ExBase::ExBase;
    QV_EX_CLONE_RAISE(BtSequencePathEx)

    class ExSyntaxError;
    class ExInternalError;

    // Resolves the family's messages in the open catalogues.
    static void subscribeMessages();
    // The texts of MSG_SEQUENCE_PATH_PARSE_ERROR and MSG_SEQUENCE_PATH_UNKNOWN_TOKEN.
    static std::string getParseErrorText();
    static std::string getUnknownTokenText(std::string const& token);
};

// The text is not a well-formed sequence path. `from` and `to` are the first
// and last column (0 based, inclusive) of the offending text in the path.
class BtSequencePathEx::ExSyntaxError : public BtSequencePathEx {
public:
    ExSyntaxError(char const* file, int line, std::string const& reason, int from, int to);
    QV_EX_CLONE_RAISE(ExSyntaxError)

    // The reason before it was wrapped in the message.
    std::string const& getDetail() const { return _detail; }
    int getFrom() const { return _from; }
    int getTo() const { return _to; }

private:
    std::string _detail;
    int _from;
    int _to;
};

// The parser could not go on for a reason of its own (its stack is exhausted).
class BtSequencePathEx::ExInternalError : public BtSequencePathEx {
public:
    ExInternalError(char const* file, int line, std::string const& reason);
    QV_EX_CLONE_RAISE(ExInternalError)
};

// A failure kept by a builder, thrown again from where the parse gave up: the
// reason is the original's, the source position the new one.
class BtSequencePathExRethrow : public BtSequencePathEx {
public:
    BtSequencePathExRethrow(char const* file, int line, BtSequencePathEx const& original);
    BtSequencePathExRethrow(BtSequencePathExRethrow const& other);
    QV_EX_CLONE_RAISE(BtSequencePathExRethrow)

    BtSequencePathEx const& getOriginal() const { return *_original; }

private:
    OPtr<BtSequencePathEx> _original;
};

} // namespace Qv
