#pragma once
// Queued requests in the order they are to start: higher priority first,
// first posted first within a priority. The links live in the requests
// themselves, so queueing allocates nothing and any request leaves the
// queue in constant time (a waiter that runs it inline takes it out).
// Not locked: the request manager guards it.
#include "pxRequest.h"

#include <cstddef>
#include <vector>

namespace Qv {

class PxRequestQueue {
public:
    bool isEmpty() const noexcept { return _levels.empty(); }
    std::size_t getSize() const noexcept { return _size; }
    // Uses the request's priority and sequence number, set by the caller.
    void push(PxRequest& request);
    void remove(PxRequest& request) noexcept;
    // The next to start, or null.
    PxRequest* getFront() const noexcept { return _levels.empty() ? nullptr : _levels.front().head; }

    // The first request, in start order among the first `limit` ones, for
    // which `accept(request)` holds; null when none.
    template <class Predicate>
    PxRequest* findFirst(Predicate const& accept, int limit) const {
        for (Level const& level : _levels)
            for (PxRequest* request = level.head; request; request = request->_queueNext) {
                if (limit-- <= 0)
                    return nullptr;
                if (accept(*request))
                    return request;
            }
        return nullptr;
    }

    // The one that starts first of two fronts (either may be null).
    static PxRequest* getFirstToStart(PxRequest* a, PxRequest* b) noexcept;

private:
    struct Level {
        int priority;
        PxRequest* head;
        PxRequest* tail;
    };
    // By decreasing priority; a level goes when its last request does.
    std::vector<Level> _levels;
    std::size_t _size = 0;
};

} // namespace Qv
