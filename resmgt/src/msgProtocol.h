#pragma once
// A message about to be shown: the catalogue text of an id, its parameters
// filled in the order of the substitute calls, and a severity.
#include "msgSink.h"

#include <concepts>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace Qv {

class MsgSubscription;

class MsgProtocol {
public:
    virtual ~MsgProtocol();

    // Fills the next placeholder: the first call %1, the second %2, ...
    MsgProtocol& substitute(std::string_view value);
    MsgProtocol& substitute(char const* value) { return substitute(std::string_view(value)); }
    // Decimal text of a whole number; characters and booleans are not numbers here.
    template <std::integral T>
    requires(!std::same_as<T, bool> && !std::same_as<T, char>) MsgProtocol& substitute(T value) {
        return substitute(std::string_view(std::to_string(value)));
    }

    // The text with its substitutions; a placeholder without a value stays
    // visible, so a forgotten parameter shows in the message.
    std::string getText() const;
    // Hands the text and the severity to the server's sink.
    void display() const;

    // The catalogue id; empty for a message built from plain text.
    std::string const& getId() const { return _id; }
    MsgSeverity getSeverity() const { return _severity; }

protected:
    // Throws MsgEx::ExNotSubscribed when the subscription is not resolved yet.
    MsgProtocol(MsgSubscription const& subscription, MsgSeverity severity);
    MsgProtocol(std::string id, std::string text, MsgSeverity severity);

private:
    std::string _id;
    std::string _text;
    MsgSeverity _severity;
    std::vector<std::string> _values;
};

} // namespace Qv
