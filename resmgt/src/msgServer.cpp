#include "msgServer.h"

#include "msgCatalogue.h"
#include "msgEx.h"
#include "msgSubscription.h"

#include <algorithm>
#include <cstdio>
#include <fmt/format.h>
#include <fmt/ranges.h>

namespace Qv {

std::string_view toString(MsgSeverity severity) {
    switch (severity) {
    case MsgSeverity::Information:
        return "information";
    case MsgSeverity::Warning:
        return "warning";
    case MsgSeverity::Error:
        return "error";
    }
    return "message";
}

namespace {

void writeToStandardError(MsgSeverity severity, std::string const& text) {
    fmt::print(stderr, "{}: {}\n", toString(severity), text);
    std::fflush(stderr);
}

} // namespace

MsgServer& MsgServer::getInstance() {
    // Never destroyed on purpose: static destructors of other libraries may still display.
    static MsgServer* const instance = new MsgServer;
    return *instance;
}

MsgServer::MsgServer() = default;

MsgServer::~MsgServer() = default;

void MsgServer::subscribe(MsgSubscription& subscription) {
    std::lock_guard lock(_mutex);
    for (auto it = _catalogues.rbegin(); it != _catalogues.rend(); ++it)
        if (std::string const* text = (*it)->find(subscription.getId())) {
            subscription.resolve(*text);
            return;
        }
    if (_catalogues.empty())
        throw MsgEx::ExUnknownId(
            __FILE__, __LINE__,
            fmt::format("Message {} is subscribed while no catalogue is open", subscription.getId()));
    std::vector<std::string> names;
    for (auto const& catalogue : _catalogues)
        names.push_back(catalogue->getName());
    throw MsgEx::ExUnknownId(__FILE__, __LINE__,
                             fmt::format("Message {} is not in the message catalogue {}",
                                         subscription.getId(), fmt::join(names, ", ")));
}

void MsgServer::display(MsgSeverity severity, std::string const& text) {
    MsgSink sink;
    {
        std::lock_guard lock(_mutex);
        sink = _sink;
    }
    std::lock_guard lock(_displayMutex);
    if (sink)
        sink(severity, text);
    else
        writeToStandardError(severity, text);
}

MsgSink MsgServer::setSink(MsgSink sink) {
    std::lock_guard lock(_mutex);
    std::swap(sink, _sink);
    return sink;
}

void MsgServer::openCatalogue(std::shared_ptr<MsgCatalogue const> catalogue) {
    std::lock_guard lock(_mutex);
    _catalogues.push_back(std::move(catalogue));
}

void MsgServer::closeCatalogue(std::shared_ptr<MsgCatalogue const> const& catalogue) {
    std::lock_guard lock(_mutex);
    auto const it = std::find(_catalogues.rbegin(), _catalogues.rend(), catalogue);
    if (it != _catalogues.rend())
        _catalogues.erase(std::next(it).base());
}

} // namespace Qv
