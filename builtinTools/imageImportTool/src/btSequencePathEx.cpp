#include "btSequencePathEx.h"

#include "msgError.h"
#include "msgServer.h"
#include "msgSubscription.h"

namespace Qv {

namespace {
MsgSubscription gSyntaxError("MSG_SEQUENCE_PATH_SYNTAX_ERROR");
MsgSubscription gInternalError("MSG_SEQUENCE_PATH_INTERNAL_ERROR");
MsgSubscription gUnknownToken("MSG_SEQUENCE_PATH_UNKNOWN_TOKEN");
MsgSubscription gParseError("MSG_SEQUENCE_PATH_PARSE_ERROR");
} // namespace

void BtSequencePathEx::subscribeMessages() {
    MsgServer::getInstance().subscribe(gSyntaxError);
    MsgServer::getInstance().subscribe(gInternalError);
    MsgServer::getInstance().subscribe(gUnknownToken);
    MsgServer::getInstance().subscribe(gParseError);
}

std::string BtSequencePathEx::getParseErrorText() {
    return MsgError(gParseError).getText();
}

std::string BtSequencePathEx::getUnknownTokenText(std::string const& token) {
    MsgError message(gUnknownToken);
    message.substitute(token);
    return message.getText();
}

BtSequencePathEx::ExSyntaxError::ExSyntaxError(char const* file, int line, std::string const& reason,
                                               int from, int to)
    : BtSequencePathEx(file, line, reason), _detail(reason), _from(from), _to(to) {
    MsgError message(gSyntaxError);
    message.substitute(reason).substitute(from).substitute(to);
    setReason(message.getText());
}

BtSequencePathEx::ExInternalError::ExInternalError(char const* file, int line, std::string const& reason)
    : BtSequencePathEx(file, line, reason) {
    MsgError message(gInternalError);
    message.substitute(reason);
    setReason(message.getText());
}

BtSequencePathExRethrow::BtSequencePathExRethrow(char const* file, int line, BtSequencePathEx const& original)
    : BtSequencePathEx(file, line, original.getReason()),
      _original(static_cast<BtSequencePathEx*>(original.clone().release())) {}

BtSequencePathExRethrow::BtSequencePathExRethrow(BtSequencePathExRethrow const& other)
    : BtSequencePathEx(other), _original(static_cast<BtSequencePathEx*>(other._original->clone().release())) {
}

} // namespace Qv
