#include "msgSubscription.h"

#include "msgEx.h"

namespace Qv {

std::string const& MsgSubscription::getText() const {
    if (!_subscribed)
        throw MsgEx::ExNotSubscribed(__FILE__, __LINE__,
                                     "Message " + _id + " is used before its catalogue was subscribed");
    return _text;
}

void MsgSubscription::resolve(std::string text) {
    _text = std::move(text);
    _subscribed = true;
}

} // namespace Qv
