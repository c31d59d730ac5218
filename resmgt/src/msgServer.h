#pragma once
// The process's message service: it resolves subscriptions against the
// catalogues open at the moment, and shows messages through one sink.
// Every operation may be called from any thread.
#include "msgSink.h"

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace Qv {

class MsgCatalogue;
class MsgSubscription;

class MsgServer {
public:
    // The one server; it lives to the very end of the process so that messages
    // shown from static destructors still find it.
    static MsgServer& getInstance();

    virtual ~MsgServer();

    // Resolves the subscription's id in the open catalogues, the most recently
    // opened first, and keeps the text in the subscription. Throws
    // MsgEx::ExUnknownId naming the id and the open catalogues.
    virtual void subscribe(MsgSubscription& subscription);

    // Shows a final text through the sink. Calls are serialised, so a sink need
    // not be thread-safe itself.
    void display(MsgSeverity severity, std::string const& text);

    // Installs a sink and returns the previous one; an empty sink restores the
    // default, which writes "<severity>: <text>" lines on standard error.
    MsgSink setSink(MsgSink sink);

    // Catalogue bookkeeping of MsgFileGuard: opened catalogues are shared, and
    // closing takes away exactly the one that was opened, whatever the order.
    void openCatalogue(std::shared_ptr<MsgCatalogue const> catalogue);
    void closeCatalogue(std::shared_ptr<MsgCatalogue const> const& catalogue);

protected:
    MsgServer();

private:
    std::mutex _mutex; // guards _catalogues and _sink
    std::vector<std::shared_ptr<MsgCatalogue const>> _catalogues;
    MsgSink _sink;
    std::recursive_mutex _displayMutex; // one message at a time through the sink
};

// Installs a sink for a scope and puts the previous one back: how tests capture.
class MsgSinkGuard {
public:
    explicit MsgSinkGuard(MsgSink sink) : _previous(MsgServer::getInstance().setSink(std::move(sink))) {}
    ~MsgSinkGuard() { MsgServer::getInstance().setSink(std::move(_previous)); }
    MsgSinkGuard(MsgSinkGuard const&) = delete;
    MsgSinkGuard& operator=(MsgSinkGuard const&) = delete;

private:
    MsgSink _previous;
};

} // namespace Qv
