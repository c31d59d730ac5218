#include "pxRequestQueue.h"

#include <algorithm>

namespace Qv {

void PxRequestQueue::push(PxRequest& request) {
    int const priority = request._priority;
    // Few distinct priorities exist: a linear search from the top is fastest.
    auto level = std::find_if(_levels.begin(), _levels.end(),
                              [priority](Level const& l) { return l.priority <= priority; });
    if (level == _levels.end() || level->priority != priority)
        level = _levels.insert(level, Level{priority, nullptr, nullptr});
    request._queuePrev = level->tail;
    request._queueNext = nullptr;
    if (level->tail)
        level->tail->_queueNext = &request;
    else
        level->head = &request;
    level->tail = &request;
    ++_size;
}

void PxRequestQueue::remove(PxRequest& request) noexcept {
    auto level = std::find_if(_levels.begin(), _levels.end(),
                              [&request](Level const& l) { return l.priority == request._priority; });
    if (request._queuePrev)
        request._queuePrev->_queueNext = request._queueNext;
    else
        level->head = request._queueNext;
    if (request._queueNext)
        request._queueNext->_queuePrev = request._queuePrev;
    else
        level->tail = request._queuePrev;
    request._queuePrev = request._queueNext = nullptr;
    if (!level->head)
        _levels.erase(level);
    --_size;
}

PxRequest* PxRequestQueue::getFirstToStart(PxRequest* a, PxRequest* b) noexcept {
    if (!a || !b)
        return a ? a : b;
    if (a->_priority != b->_priority)
        return a->_priority > b->_priority ? a : b;
    return a->_seq < b->_seq ? a : b;
}

} // namespace Qv
