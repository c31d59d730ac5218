#include "msgProtocol.h"

#include "msgServer.h"
#include "msgSubscription.h"

namespace Qv {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

} // namespace

MsgProtocol::MsgProtocol(MsgSubscription const& subscription, MsgSeverity severity)
    : _id(subscription.getId()), _text(subscription.getText()), _severity(severity) {}

MsgProtocol::MsgProtocol(std::string id, std::string text, MsgSeverity severity)
    : _id(std::move(id)), _text(std::move(text)), _severity(severity) {}

MsgProtocol::~MsgProtocol() = default;

MsgProtocol& MsgProtocol::substitute(std::string_view value) {
    _values.emplace_back(value);
    return *this;
}

std::string MsgProtocol::getText() const {
    // One pass over the catalogue text, so a value that itself contains "%2"
    // is never expanded again, and "%10" is read as ten, not as %1 then "0".
    std::string result;
    result.reserve(_text.size());
    std::size_t pos = 0;
    while (pos < _text.size()) {
        char const c = _text[pos];
        if (c != '%' || pos + 1 == _text.size() || !isDigit(_text[pos + 1])) {
            result += c;
            ++pos;
            continue;
        }
        std::size_t end = pos + 1;
        std::size_t number = 0;
        bool tooLarge = false;
        for (; end < _text.size() && isDigit(_text[end]); ++end) {
            number = number * 10 + static_cast<std::size_t>(_text[end] - '0');
            tooLarge = tooLarge || number > _values.size();
        }
        if (!tooLarge && number >= 1)
            result += _values[number - 1];
        else
            result.append(_text, pos, end - pos);
        pos = end;
    }
    return result;
}

void MsgProtocol::display() const {
    MsgServer::getInstance().display(_severity, getText());
}

} // namespace Qv
