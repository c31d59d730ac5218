#pragma once
// Failures of expressions: why a text was refused and where, as the first and
// last column (1 based, the last one past the end) of the offending text.
// Every reason is a text of the catalogue "expressions.msg", so the family's
// messages must be subscribed (BtExpParser::initialize) before one is built.
#include "exBase.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace Qv {

class BtExpEx : public ExBase {
public:
    BtExpEx(char const* file, int line, std::string reason, std::int32_t firstColumn,
            std::int32_t lastColumn);
    QV_EX_CLONE_RAISE(BtExpEx)

    virtual std::int32_t getFirstColumn() const { return _firstColumn; }
    virtual std::int32_t getLastColumn() const { return _lastColumn; }

    class ExSyntaxError;
    class ExUnknownFunction;
    class ExUnknownOperator;
    class ExUnknownAttribute;
    class ExInternalError;

    // Resolves the family's messages in the open catalogues.
    static void subscribeMessages();
    // MSG_EXPR_PARSE_ERROR, and MSG_EXPR_UNKNOWN_TOKEN with the token.
    static std::string getParseErrorText();
    static std::string getUnknownTokenText(std::string_view token);

private:
    std::int32_t _firstColumn;
    std::int32_t _lastColumn;
};

// The text is not one of the language; the message says why.
class BtExpEx::ExSyntaxError : public BtExpEx {
public:
    ExSyntaxError(char const* file, int line, std::string_view message, std::int32_t firstColumn,
                  std::int32_t lastColumn);
    QV_EX_CLONE_RAISE(ExSyntaxError)
};

// No function of that name takes that many arguments.
class BtExpEx::ExUnknownFunction : public BtExpEx {
public:
    ExUnknownFunction(char const* file, int line, std::string_view name, int argumentCount,
                      std::int32_t firstColumn, std::int32_t lastColumn);
    QV_EX_CLONE_RAISE(ExUnknownFunction)
};

// No operator of that text for these operands. Its reason is deliberately the
// unknown-function message: users see operators and functions alike.
class BtExpEx::ExUnknownOperator : public BtExpEx {
public:
    ExUnknownOperator(char const* file, int line, std::string_view op, std::int32_t firstColumn,
                      std::int32_t lastColumn);
    QV_EX_CLONE_RAISE(ExUnknownOperator)
};

// A reference that names nothing usable; the message says why.
class BtExpEx::ExUnknownAttribute : public BtExpEx {
public:
    ExUnknownAttribute(char const* file, int line, std::string_view message, std::int32_t firstColumn,
                       std::int32_t lastColumn);
    QV_EX_CLONE_RAISE(ExUnknownAttribute)
};

// Something the text cannot be blamed for; the message says what.
class BtExpEx::ExInternalError : public BtExpEx {
public:
    ExInternalError(char const* file, int line, std::string_view message, std::int32_t firstColumn,
                    std::int32_t lastColumn);
    QV_EX_CLONE_RAISE(ExInternalError)
};

// A failure a listener kept during a parse, thrown once the parser has wound
// down. Texts, columns, clone and raise are the kept exception's, so raise()
// throws it again with its own type.
class BtExpExRethrow : public BtExpEx {
public:
    BtExpExRethrow(char const* file, int line, OPtr<BtExpEx> original);
    BtExpExRethrow(BtExpExRethrow const& other);

    char const* what() const noexcept override { return _original->what(); }
    std::string const& getReason() const override { return _original->getReason(); }
    std::string const& getFile() const override { return _original->getFile(); }
    int getLine() const override { return _original->getLine(); }
    OPtrRet<ExBase> clone() const override { return _original->clone(); }
    [[noreturn]] void raise() const override;
    std::int32_t getFirstColumn() const override { return _original->getFirstColumn(); }
    std::int32_t getLastColumn() const override { return _original->getLastColumn(); }

    BtExpEx const& getOriginal() const { return *_original; }

private:
    OPtr<BtExpEx> _original;
};

} // namespace Qv
