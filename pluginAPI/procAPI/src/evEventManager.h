#pragma once
// The queue of events for the application thread. Any thread posts; the
// application thread runs what was posted when it calls processEvents, in
// post order. Nothing runs an event by itself: the host calls processEvents
// where its application thread is free, which in `qv` is after each wait for
// a request (the request manager's waits do not do it, so that a worker never
// runs application-thread code).
//
//   EvEventManager::getInstance().postEvent(
//       std::make_unique<EvRequestEvent>([colour, listeners] { listeners->call(colour); }));
//   ...
//   manager.waitForRequest(request);               // on the application thread
//   EvEventManager::getInstance().processEvents();
#include "evEvent.h"

#include <deque>
#include <memory>
#include <mutex>

namespace Qv {

class EvEventManager {
public:
    static EvEventManager& getInstance();

    EvEventManager() = default;
    EvEventManager(EvEventManager const&) = delete;
    EvEventManager& operator=(EvEventManager const&) = delete;

    // From any thread. A null event fails the assertion "event != nullptr".
    void postEvent(std::unique_ptr<EvEvent> event);
    // Runs every event posted before the call, in post order; events posted
    // meanwhile (by an event, or by other threads) wait for the next call.
    // Returns how many ran. On the application thread only: asserts
    // "!PxRequestMgr::getInstance().isWorkerThreadCurrent()" and, once the
    // packages were initialised, "PiAppThread::isCurrent()". If an event
    // throws, the events after it stay queued, ahead of newer ones, and the
    // exception goes on to the caller.
    int processEvents();
    // Drops the events not yet run (shutdown, tests).
    void clear();
    int getNbPendingEvents() const;

private:
    mutable std::mutex _mutex;
    std::deque<std::unique_ptr<EvEvent>> _events;
};

} // namespace Qv
