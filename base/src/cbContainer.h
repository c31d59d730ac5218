#pragma once
// Owns handlers for the length of a scope (an object's life, one call) and
// undoes their registrations when it ends, so that no dispatcher is left
// holding a deleted handler. The dispatchers must outlive the container:
// declare the container after them.
#include "cbDispatcher.h"
#include "cbHandler.h"
#include "exBase.h"

#include <concepts>
#include <functional>
#include <utility>
#include <vector>

namespace Qv {

class CbContainer {
public:
    CbContainer();
    ~CbContainer();
    CbContainer(CbContainer const&) = delete;
    CbContainer& operator=(CbContainer const&) = delete;

    // Keeps the handler until the container ends; returns it, borrowed.
    template <std::derived_from<CbHandlerBase> H>
    H* add(OPtrRet<H> handler) {
        QV_ASSERT(handler != nullptr);
        H* borrowed = handler.get();
        _handlers.push_back(std::move(handler));
        return borrowed;
    }

    // Keeps the handler and registers it with `dispatcher` until the container ends.
    template <class T, std::derived_from<CbHandler<T>> H>
    H* add(CbDispatcher<T>& dispatcher, OPtrRet<H> handler) {
        H* borrowed = add(std::move(handler));
        dispatcher.addCallback(borrowed);
        _registrations.push_back([&dispatcher, borrowed] { dispatcher.removeCallback(borrowed); });
        return borrowed;
    }

    // Undoes the registrations, then deletes the handlers, newest first.
    void clear();
    bool isEmpty() const { return _handlers.empty(); }

private:
    std::vector<std::function<void()>> _registrations;
    std::vector<OPtr<CbHandlerBase>> _handlers;
};

} // namespace Qv
