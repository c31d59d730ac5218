#pragma once
// A message id held by the code that shows it. It is built at static
// construction, so it only stores the id; the server fills in the text when
// the package subscribes it while its catalogue is open.
#include <string>

namespace Qv {

class MsgServer;

class MsgSubscription {
public:
    explicit MsgSubscription(std::string id) : _id(std::move(id)) {}
    // A subscription is the identity the server resolves: a copy would stay unresolved.
    MsgSubscription(MsgSubscription const&) = delete;
    MsgSubscription& operator=(MsgSubscription const&) = delete;

    std::string const& getId() const { return _id; }
    bool isSubscribed() const { return _subscribed; }
    // The catalogue text, placeholders unfilled. Throws MsgEx::ExNotSubscribed
    // before the subscription was resolved.
    std::string const& getText() const;

private:
    friend class MsgServer;
    void resolve(std::string text);

    std::string _id;
    std::string _text;
    bool _subscribed = false;
};

} // namespace Qv
