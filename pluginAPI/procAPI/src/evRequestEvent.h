#pragma once
// An event that runs a function on the application thread, for a worker
// that must touch what only that thread may (a controller, a callback
// dispatcher). The function owns what it captured until it has run or the
// event is dropped, so it holds values or shared pointers, never a bare
// pointer to something a worker's stack or a node may have released.
#include "assertions.h"
#include "evEvent.h"

#include <functional>
#include <utility>

namespace Qv {

class EvRequestEvent : public EvEvent {
public:
    // An empty function fails the assertion "fn != nullptr".
    explicit EvRequestEvent(std::function<void()> fn) : _fn(std::move(fn)) {
        QV_ASSERT_MSG(_fn != nullptr, "fn != nullptr");
    }

    void process() override { _fn(); }

private:
    std::function<void()> _fn;
};

} // namespace Qv
