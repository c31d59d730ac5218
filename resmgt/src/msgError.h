#pragma once
// The three kinds of message a user sees, by severity.
#include "msgProtocol.h"
#include "msgSubscription.h"

namespace Qv {

class MsgError : public MsgProtocol {
public:
    explicit MsgError(MsgSubscription const& subscription) : MsgProtocol(subscription, MsgSeverity::Error) {}
};

class MsgWarning : public MsgProtocol {
public:
    explicit MsgWarning(MsgSubscription const& subscription)
        : MsgProtocol(subscription, MsgSeverity::Warning) {}
    // A warning whose words are in the code rather than in a catalogue.
    explicit MsgWarning(std::string text) : MsgProtocol({}, std::move(text), MsgSeverity::Warning) {}
};

class MsgInformation : public MsgProtocol {
public:
    explicit MsgInformation(MsgSubscription const& subscription)
        : MsgProtocol(subscription, MsgSeverity::Information) {}
};

} // namespace Qv
