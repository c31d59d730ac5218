#include "btExpEx.h"

#include "msgError.h"
#include "msgServer.h"
#include "msgSubscription.h"

#include <exception>

namespace Qv {

namespace {
MsgSubscription gSyntaxError("MSG_EXPR_SYNTAX_ERROR");
MsgSubscription gUnknownFunctionWithArgs("MSG_EXPR_UNKNOWN_FUNCTION_WITH_ARGS");
MsgSubscription gUnknownFunction("MSG_EXPR_UNKNOWN_FUNCTION");
MsgSubscription gUnknownAttribute("MSG_EXPR_UNKNOWN_ATTRIBUTE");
MsgSubscription gInternalError("MSG_EXPR_INTERNAL_ERROR");
MsgSubscription gUnknownToken("MSG_EXPR_UNKNOWN_TOKEN");
MsgSubscription gParseError("MSG_EXPR_PARSE_ERROR");

std::string textOf(MsgSubscription const& subscription, std::string_view value) {
    MsgWarning message(subscription);
    message.substitute(value);
    return message.getText();
}
} // namespace

BtExpEx::BtExpEx(char const* file, int line, std::string reason, std::int32_t firstColumn,
                 std::int32_t lastColumn)
    : ExBase(file, line, std::move(reason)), _firstColumn(firstColumn), _lastColumn(lastColumn) {}

void BtExpEx::subscribeMessages() {
    for (MsgSubscription* subscription : {&gSyntaxError, &gUnknownFunctionWithArgs, &gUnknownFunction,
                                          &gUnknownAttribute, &gInternalError, &gUnknownToken, &gParseError})
        MsgServer::getInstance().subscribe(*subscription);
}

std::string BtExpEx::getParseErrorText() {
    return MsgWarning(gParseError).getText();
}

std::string BtExpEx::getUnknownTokenText(std::string_view token) {
    return textOf(gUnknownToken, token);
}

BtExpEx::ExSyntaxError::ExSyntaxError(char const* file, int line, std::string_view message,
                                      std::int32_t firstColumn, std::int32_t lastColumn)
    : BtExpEx(file, line, textOf(gSyntaxError, message), firstColumn, lastColumn) {}

namespace {
std::string unknownFunctionText(std::string_view name, int argumentCount) {
    MsgWarning message(gUnknownFunctionWithArgs);
    message.substitute(name).substitute(argumentCount);
    return message.getText();
}
} // namespace

BtExpEx::ExUnknownFunction::ExUnknownFunction(char const* file, int line, std::string_view name,
                                              int argumentCount, std::int32_t firstColumn,
                                              std::int32_t lastColumn)
    : BtExpEx(file, line, unknownFunctionText(name, argumentCount), firstColumn, lastColumn) {}

BtExpEx::ExUnknownOperator::ExUnknownOperator(char const* file, int line, std::string_view op,
                                              std::int32_t firstColumn, std::int32_t lastColumn)
    : BtExpEx(file, line, textOf(gUnknownFunction, op), firstColumn, lastColumn) {}

BtExpEx::ExUnknownAttribute::ExUnknownAttribute(char const* file, int line, std::string_view message,
                                                std::int32_t firstColumn, std::int32_t lastColumn)
    : BtExpEx(file, line, textOf(gUnknownAttribute, message), firstColumn, lastColumn) {}

BtExpEx::ExInternalError::ExInternalError(char const* file, int line, std::string_view message,
                                          std::int32_t firstColumn, std::int32_t lastColumn)
    : BtExpEx(file, line, textOf(gInternalError, message), firstColumn, lastColumn) {}

BtExpExRethrow::BtExpExRethrow(char const* file, int line, OPtr<BtExpEx> original)
    : BtExpEx(file, line, original->getReason(), original->getFirstColumn(), original->getLastColumn()),
      _original(std::move(original)) {}

BtExpExRethrow::BtExpExRethrow(BtExpExRethrow const& other)
    : BtExpEx(other), _original(static_cast<BtExpEx*>(other._original->clone().release())) {}

void BtExpExRethrow::raise() const {
    _original->raise();
    std::terminate(); // not reached: every raise throws
}

} // namespace Qv
