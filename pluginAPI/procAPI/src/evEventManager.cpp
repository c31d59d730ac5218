#include "evEventManager.h"

#include "assertions.h"
#include "inInitMgr.h"
#include "pxThreadRules.h"

#include <thread>

namespace Qv {

namespace {
// The application thread is the one that initialised the packages; the
// composition layer that names it (PiAppThread) lies above this library,
// so the same test is made here on what the package manager records.
void assertOnApplicationThread() {
    PxThreadRules::assertNotOnWorker(__FILE__, __LINE__);
    std::thread::id const appThread = InInitMgr::getInstance().getInitializingThread();
    QV_ASSERT_MSG(appThread == std::thread::id() || appThread == std::this_thread::get_id(),
                  "PiAppThread::isCurrent()");
}
} // namespace

EvEventManager& EvEventManager::getInstance() {
    static EvEventManager instance;
    return instance;
}

void EvEventManager::postEvent(std::unique_ptr<EvEvent> event) {
    QV_ASSERT(event != nullptr);
    std::lock_guard lock(_mutex);
    _events.push_back(std::move(event));
}

int EvEventManager::processEvents() {
    assertOnApplicationThread();
    std::deque<std::unique_ptr<EvEvent>> batch;
    {
        std::lock_guard lock(_mutex);
        batch.swap(_events);
    }
    int ran = 0;
    try {
        for (; !batch.empty(); batch.pop_front(), ++ran)
            batch.front()->process();
    } catch (...) {
        // The failed event is done; those after it go back to the front.
        batch.pop_front();
        std::lock_guard lock(_mutex);
        for (auto it = batch.rbegin(); it != batch.rend(); ++it)
            _events.push_front(std::move(*it));
        throw;
    }
    return ran;
}

void EvEventManager::clear() {
    std::deque<std::unique_ptr<EvEvent>> dropped;
    {
        std::lock_guard lock(_mutex);
        dropped.swap(_events);
    }
    // Destroyed outside the lock: an event's captures may post again.
}

int EvEventManager::getNbPendingEvents() const {
    std::lock_guard lock(_mutex);
    return static_cast<int>(_events.size());
}

} // namespace Qv
