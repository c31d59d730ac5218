#pragma once
// Calls a list of borrowed handlers in order of registration. A handler may
// add or remove handlers, itself included, while it is being called: one
// removed before its turn is not called, one added waits for the next
// dispatch. Used by one thread at a time, the one of its owner.
#include "assertions.h"
#include "cbHandler.h"

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <type_traits>
#include <vector>

namespace Qv {

template <class T>
class CbDispatcher {
public:
    CbDispatcher() = default;
    CbDispatcher(CbDispatcher const&) = delete;
    CbDispatcher& operator=(CbDispatcher const&) = delete;

    // A handler already registered is not added twice.
    void addCallback(CbHandler<T>* handler) {
        QV_ASSERT(handler != nullptr);
        if (!hasCallback(handler))
            _handlers.push_back(handler);
    }

    // A handler that is not registered is ignored.
    void removeCallback(CbHandler<T>* handler) {
        if (handler == nullptr)
            return;
        auto it = std::find(_handlers.begin(), _handlers.end(), handler);
        if (it == _handlers.end())
            return;
        // While dispatching, positions must stay put: leave a hole, swept at the end.
        if (_dispatchDepth > 0)
            *it = nullptr;
        else
            _handlers.erase(it);
    }

    bool hasCallback(CbHandler<T> const* handler) const {
        return handler && std::find(_handlers.begin(), _handlers.end(), handler) != _handlers.end();
    }
    std::size_t getNbCallbacks() const {
        return _handlers.size() - std::count(_handlers.begin(), _handlers.end(), nullptr);
    }
    bool isEmpty() const { return getNbCallbacks() == 0; }

    void dispatch(T& arg) {
        // Handlers added from now on are past this count.
        std::size_t const count = _handlers.size();
        DispatchScope scope(*this);
        for (std::size_t i = 0; i < count; ++i) {
            if (CbHandler<T>* handler = _handlers[i])
                handler->call(arg);
        }
    }

    void dispatch() requires std::same_as<std::remove_cv_t<T>, CbEmptyType> {
        std::remove_cv_t<T> none;
        dispatch(none);
    }

private:
    // Counts nested dispatches (a handler may dispatch again) and sweeps the
    // holes when the outermost one ends, also when a handler throws.
    class DispatchScope {
    public:
        explicit DispatchScope(CbDispatcher& dispatcher) : _dispatcher(dispatcher) {
            ++_dispatcher._dispatchDepth;
        }
        ~DispatchScope() {
            if (--_dispatcher._dispatchDepth == 0)
                std::erase(_dispatcher._handlers, nullptr);
        }
        DispatchScope(DispatchScope const&) = delete;
        DispatchScope& operator=(DispatchScope const&) = delete;

    private:
        CbDispatcher& _dispatcher;
    };

    std::vector<CbHandler<T>*> _handlers;
    int _dispatchDepth = 0;
};

} // namespace Qv
