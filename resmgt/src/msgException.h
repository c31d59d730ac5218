#pragma once
// An exception that carries a catalogue message: its reason is the message's
// final text, and the id stays available to whoever catches it.
#include "exBase.h"
#include "msgProtocol.h"

#include <concepts>
#include <string>

namespace Qv {

template <class Base = ExBase>
requires std::derived_from<Base, ExBase>
class MsgException : public Base {
public:
    MsgException(char const* file, int line, MsgProtocol const& message)
        : Base(file, line, message.getText()), _messageId(message.getId()) {}

    std::string const& getMessageId() const { return _messageId; }

    QV_EX_CLONE_RAISE(MsgException)

private:
    std::string _messageId;
};

} // namespace Qv
