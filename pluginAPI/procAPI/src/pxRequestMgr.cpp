#include "pxRequestMgr.h"

#include "assertions.h"
#include "lgLog.h"
#include "pxEx.h"
#include "pxSettings.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <string>
#include <utility>
#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#endif

namespace Qv {

namespace {

// The manager's lock is held for a few hundred instructions at a time: a
// brief spin before sleeping saves the two system calls of a sleep and a
// wake-up when requests are small and follow each other closely.
std::unique_lock<std::mutex> lockSpinning(std::mutex& mutex) {
    constexpr int SPINS = 64;
    for (int i = 0; i < SPINS; ++i) {
        if (mutex.try_lock())
            return std::unique_lock<std::mutex>(mutex, std::adopt_lock);
#if defined(__x86_64__) || defined(__i386__)
        _mm_pause();
#endif
    }
    return std::unique_lock<std::mutex>(mutex);
}

// What the manager knows of the calling thread.
struct ThreadState {
    // The request running on this thread; the ones it interrupted follow
    // through PxRequest::_interrupted.
    PxRequest* current = nullptr;
    // Non-null while the thread works for a manager: always on a worker,
    // for the length of an inline run elsewhere.
    PxRequestMgr const* workerOf = nullptr;
    // The pool the thread belongs to, if any.
    PxRequestMgr const* poolOf = nullptr;
    // A worker holds a place in its pool while it runs the request it took,
    // except while it is blocked.
    bool holdsPlace = false;
    bool placeLent = false;
    // The last request posted from the running request, not shared yet: its
    // poster often waits for it next and then runs it without any lock. It
    // is shared at the poster's next call to the manager or the end of its
    // request.
    PxRequest* local = nullptr;
    PxRequestMgr* localMgr = nullptr;
    int blockedCount = 0;
};

thread_local ThreadState t_thread;

// How far down the queue a helper looks for work its wait is for.
constexpr int HELP_SCAN_LIMIT = 64;

int readNbWorkers() {
    unsigned const hardware = std::thread::hardware_concurrency();
    return PxSettings::readCount("QV_WORKERS", hardware > 0 ? int(hardware) : 1, 4096);
}

[[noreturn]] void throwCancelled(PxRequest const& request) {
    throw PxEx::ExRequestCancelled(__FILE__, __LINE__, "Request cancelled: " + request.getRequestType());
}

PxRequest& getRequest(PxRequestPtrBase const& request) {
    if (request.isNull())
        PxRequestPtrBase::throwNullPtrException(typeid(PxRequest));
    return *request.getRequest();
}

// Each waiter gets an exception object of its own.
void rethrowFailure(std::exception_ptr const& error) {
    try {
        std::rethrow_exception(error);
    } catch (ExBase const& ex) {
        ex.raise();
    }
}

} // namespace

PxRequestMgr& PxRequestMgr::getInstance() {
    // Never deleted: nodes ask it about the thread until the very end. Its
    // workers stop at exit, while everything they might touch still exists.
    static PxRequestMgr* const instance = new PxRequestMgr(readNbWorkers());
    static struct StopAtExit {
        ~StopAtExit() { instance->stop(); }
    } stopAtExit;
    return *instance;
}

PxRequestMgr::PxRequestMgr(int nbWorkers) : _nbSlots(nbWorkers), _nbFreePlaces(nbWorkers) {
    QV_ASSERT(nbWorkers > 0);
}

PxRequestMgr::~PxRequestMgr() {
    stop();
}

bool PxRequestMgr::isWorkerThreadCurrent() const {
    return t_thread.workerOf != nullptr;
}

void PxRequestMgr::checkCancellation() const {
    // A point the running request passes often: its last post is shared here.
    shareLocal();
    PxRequest const* current = t_thread.current;
    if (current && current->isCancelledWithAncestors())
        throwCancelled(*current);
}

// ---- Life of a request ------------------------------------------------------

void PxRequestMgr::setStage(PxRequest& request, unsigned stage) noexcept {
    unsigned state = request._state.load(std::memory_order_relaxed);
    while (!request._state.compare_exchange_weak(state, (state & ~unsigned(PxRequest::STAGE)) | stage,
                                                 std::memory_order_acq_rel)) {
    }
}

void PxRequestMgr::adopt(PxRequest& request, PxRequestPtrBase const& owner, int level, bool exclusive) {
    PxRequest* const parent = t_thread.current;
    request._self = owner.getShared();
    request._parent = parent;
    // Anything else runs above its poster on this thread, or is shared later.
    if (exclusive)
        ownAncestors(request);
    request._exclusive = exclusive;
    request._nested = parent && !exclusive;
    request._priority = level;
}

// A request that runs above its poster on the same thread needs no hold on
// it; one that may run elsewhere, or outlive it, holds the whole chain.
// Every request without a hold on its poster runs on this thread, so the
// walk only touches requests this thread runs.
void PxRequestMgr::ownAncestors(PxRequest& request) noexcept {
    for (PxRequest* r = &request; r->_parent && !r->_parentOwner; r = r->_parent)
        r->_parentOwner = r->_parent->_self;
}

void PxRequestMgr::postRequest(PxRequestPtrBase const& requestPtr, int priority) {
    PxRequest& request = getRequest(requestPtr);
    int const level = priority + request.getPriorityLevel();
    bool const exclusive = request.isExclusive();
    shareLocal();
    ThreadState& thread = t_thread;
    bool const keepLocal = thread.current && !exclusive;
    unsigned expected = PxRequest::CREATED;
    bool const isNewAndUnreleased = request._state.compare_exchange_strong(
        expected, keepLocal ? PxRequest::QUEUED | PxRequest::LOCAL : PxRequest::QUEUED,
        std::memory_order_acq_rel);
    QV_ASSERT(isNewAndUnreleased);
    adopt(request, requestPtr, level, exclusive);
    if (keepLocal) {
        thread.local = &request;
        thread.localMgr = this;
        return;
    }
    if (_stopping.load(std::memory_order_acquire)) {
        // Too late to run: it ends as if cancelled before it started.
        request.cancel();
        std::unique_lock lock(_mutex);
        execute(request, lock);
        return;
    }
    pushToInbox(request);
    if (mayNeedWakeups())
        wakeForPostedWork();
}

void PxRequestMgr::shareLocal() {
    ThreadState& thread = t_thread;
    if (PxRequest* const request = thread.local) {
        thread.local = nullptr;
        thread.localMgr->share(*request);
    }
}

// Still LOCAL in the inbox: whoever sorts it into the queues, under the
// lock, clears the mark, so that nobody else takes it before it is there.
void PxRequestMgr::share(PxRequest& request) {
    ownAncestors(request);
    if (_stopping.load(std::memory_order_acquire)) {
        request.cancel();
        request._state.fetch_and(~unsigned(PxRequest::LOCAL), std::memory_order_acq_rel);
        std::unique_lock lock(_mutex);
        execute(request, lock);
        return;
    }
    pushToInbox(request);
    if (mayNeedWakeups())
        wakeForPostedWork();
}

void PxRequestMgr::pushToInbox(PxRequest& request) noexcept {
    // Read-mostly: written only when a priority is posted for the first time.
    int top = _topPostedPriority.load(std::memory_order_relaxed);
    while (request._priority > top &&
           !_topPostedPriority.compare_exchange_weak(top, request._priority, std::memory_order_relaxed)) {
    }
    PxRequest* head = _inbox.load(std::memory_order_relaxed);
    do
        request._queueNext = head;
    while (!_inbox.compare_exchange_weak(head, &request, std::memory_order_seq_cst));
}

// Paired with a worker or waiter that publishes itself as available, then
// looks at the inbox before it sleeps: one of the two sees the other.
bool PxRequestMgr::mayNeedWakeups() const noexcept {
    return _nbFreePlaces.load(std::memory_order_seq_cst) > 0 ||
           _nbSleepingWaiters.load(std::memory_order_seq_cst) > 0;
}

void PxRequestMgr::wakeForPostedWork() {
    std::unique_lock lock = lockSpinning(_mutex);
    Wakeups wakeups = planWakeups();
    // Waiters help only where no worker is coming.
    wakeups.waiters = _nbSleepingWaiters > 0 && wakeups.nbWorkers == 0 && _nbStarting == 0;
    lock.unlock();
    wake(wakeups);
}

void PxRequestMgr::releaseRequest(PxRequestPtrBase const& requestPtr) {
    PxRequest& request = getRequest(requestPtr);
    shareLocal();
    // Whoever comes second of the release and the end cleans up: the one
    // that sees the other's mark.
    unsigned const state = request._state.fetch_or(PxRequest::RELEASED, std::memory_order_acq_rel);
    if (state & PxRequest::RELEASED)
        return;
    if ((state & PxRequest::STAGE) == PxRequest::DONE) {
        runCleanUp(request);
        return;
    }
    request.cancel();
    std::unique_lock lock(_mutex);
    drainInbox();
    switch (request._state.load(std::memory_order_acquire) & PxRequest::STAGE) {
    case PxRequest::CREATED: {
        // Never posted: it never runs, and a late wait reports the cancellation.
        try {
            throwCancelled(request);
        } catch (...) {
            request._error = std::current_exception();
        }
        unsigned const last = request._state.fetch_or(PxRequest::DONE, std::memory_order_acq_rel);
        lock.unlock();
        if (last & PxRequest::HAS_WAITERS)
            _waitCv.notify_all();
        runCleanUp(request);
        return;
    }
    case PxRequest::QUEUED:
        if (request._state.load(std::memory_order_acquire) & PxRequest::LOCAL)
            return; // in its poster's hand: it ends cancelled once shared
        // Ends here at once, without its work; its end cleans it up. The
        // owner's pointer keeps it alive meanwhile.
        takeOutOfQueue(request);
        execute(request, lock);
        return;
    default: // Running: it stops at its next check, and its end cleans it up.
        return;
    }
}

void PxRequestMgr::waitForRequest(PxRequestPtrBase const& requestPtr) {
    PxRequest& request = getRequest(requestPtr);
    ThreadState& thread = t_thread;
    if (thread.local == &request) {
        // Posted last from here and seen by nobody else: run at once, no lock.
        // It keeps its mark while it runs (to other threads, it is in its
        // poster's hand either way); its end clears it.
        thread.local = nullptr;
        thread.localMgr->run(request);
    } else {
        shareLocal();
    }
    if (!request.isDone())
        waitUntilDone(requestPtr, request);
    if (request._error)
        rethrowFailure(request._error);
}

void PxRequestMgr::waitUntilDone(PxRequestPtrBase const& requestPtr, PxRequest& request) {
    ThreadState& thread = t_thread;
    std::unique_lock lock = lockSpinning(_mutex);
    for (;;) {
        drainInbox();
        unsigned const state = request._state.load(std::memory_order_acquire);
        unsigned const stage = state & PxRequest::STAGE;
        if (stage == PxRequest::DONE)
            return;
        if (stage == PxRequest::CREATED ? request.isExclusive() : request._exclusive) {
            // It waits for every running request, this thread's too.
            bool const waitedFromOutsideRequests = thread.current == nullptr;
            if (!waitedFromOutsideRequests) {
                lock.unlock();
                QV_ASSERT(waitedFromOutsideRequests);
            }
            if (state == PxRequest::CREATED) {
                lock.unlock();
                postRequest(requestPtr, 0);
                lock.lock();
            } else {
                sleepUntilNews(request, lock);
            }
            continue;
        }
        if (stage == PxRequest::CREATED) {
            unsigned expected = PxRequest::CREATED;
            if (!request._state.compare_exchange_strong(expected, PxRequest::QUEUED,
                                                        std::memory_order_acq_rel)) {
                // Released meanwhile: its release ends it.
                sleepUntilNews(request, lock);
                continue;
            }
            adopt(request, requestPtr, 0, false);
            execute(request, lock);
            return;
        }
        if (stage == PxRequest::QUEUED && !(state & PxRequest::LOCAL)) {
            // Held back by an exclusive request, for whoever is outside any request.
            if (request._held && !thread.current) {
                sleepUntilNews(request, lock);
                continue;
            }
            takeOutOfQueue(request);
            execute(request, lock);
            return;
        }
        // Running elsewhere, or in its poster's hand (the poster shares it or
        // runs it), or lower on this very thread, which would never end.
        assertNotRunningHere(request, thread.current, lock);
        // Only the pool's workers help: another thread would run beyond the
        // pool's size and compete with the workers for the same requests.
        PxRequest* const help = thread.poolOf == this ? takeForHelper(request, thread.current) : nullptr;
        if (help) {
            execute(*help, lock);
            lock.lock();
        } else {
            sleepUntilNews(request, lock);
        }
    }
}

void PxRequestMgr::assertNotRunningHere(PxRequest const& request, PxRequest const* current,
                                        std::unique_lock<std::mutex>& lock) {
    bool isRunningOnThisThread = false;
    for (PxRequest const* r = current; r; r = r->_interrupted)
        isRunningOnThisThread = isRunningOnThisThread || r == &request;
    if (isRunningOnThisThread) {
        lock.unlock();
        QV_ASSERT(!isRunningOnThisThread);
    }
}

void PxRequestMgr::sleepUntilNews(PxRequest& awaited, std::unique_lock<std::mutex>& lock) {
    unsigned const state = awaited._state.fetch_or(PxRequest::HAS_WAITERS, std::memory_order_acq_rel);
    if ((state & PxRequest::STAGE) == PxRequest::DONE)
        return;
    _nbSleepingWaiters.fetch_add(1, std::memory_order_seq_cst);
    // Posted meanwhile without the lock: the caller looks at it first.
    if (!drainInbox())
        _waitCv.wait(lock);
    _nbSleepingWaiters.fetch_sub(1, std::memory_order_relaxed);
}

void PxRequestMgr::execute(PxRequest& request, std::unique_lock<std::mutex>& lock) {
    setStage(request, PxRequest::RUNNING);
    lock.unlock();
    run(request);
}

void PxRequestMgr::run(PxRequest& request) {
    ThreadState& thread = t_thread;
    // A thread counts once however many requests it runs nested: the one
    // at the bottom stands for the others, and keeps exclusive ones away.
    bool const counted = thread.current == nullptr;
    if (counted)
        _nbRunning.fetch_add(1, std::memory_order_seq_cst);
    request._interrupted = thread.current;
    PxRequestMgr const* const workerOf = thread.workerOf;
    thread.current = &request;
    thread.workerOf = this;

    runSteps(request);
    // What it posted last is shared before anyone sees it finished.
    shareLocal();

    thread.current = request._interrupted;
    thread.workerOf = workerOf;
    finish(request, counted);
}

// The end of a request, mostly without the lock: only the end of an
// exclusive request, or the last end that one waits for, takes it.
void PxRequestMgr::finish(PxRequest& request, bool counted) {
    // The manager's hold goes last: its release may destroy the request.
    RCShdPtr<PxRequest> hold = std::move(request._self);
    unsigned state = request._state.load(std::memory_order_acquire);
    bool cleanedUp = false;
    for (;;) {
        if ((state & PxRequest::RELEASED) && !cleanedUp) {
            // Released while it ran: cleaned up before anyone sees it finished.
            runCleanUp(request);
            cleanedUp = true;
        }
        unsigned const done = (state & ~unsigned(PxRequest::STAGE | PxRequest::LOCAL)) | PxRequest::DONE;
        if (request._state.compare_exchange_weak(state, done, std::memory_order_acq_rel))
            break;
    }
    Wakeups wakeups;
    if (request._exclusive) {
        std::lock_guard lock(_mutex);
        _nbRunning.fetch_sub(1, std::memory_order_seq_cst);
        if (_exclusive == &request) {
            setExclusive(nullptr);
            _exclusiveRunning = false;
            admitHeldBack();
        }
        wakeups = planWakeups();
        wakeups.waiters = _nbSleepingWaiters > 0; // those it held back
    } else if (counted && _nbRunning.fetch_sub(1, std::memory_order_seq_cst) == 1 &&
               _hasExclusive.load(std::memory_order_seq_cst)) {
        std::lock_guard lock(_mutex);
        wakeups = planWakeups();
    }
    if (state & PxRequest::HAS_WAITERS) {
        // A waiter marks the request under the lock before it sleeps: once the
        // lock is taken here, it sleeps and will hear the call.
        std::lock_guard lock(_mutex);
        wakeups.waiters = true;
    }
    wake(wakeups);
}

void PxRequestMgr::runSteps(PxRequest& request) {
    try {
        if (request.isCancelledWithAncestors())
            throwCancelled(request);
        request.performExecute();
        request.completeExecution();
    } catch (...) {
        request._error = std::current_exception();
    }
    try {
        request.postExecute();
    } catch (...) {
        if (!request._error)
            request._error = std::current_exception();
    }
}

void PxRequestMgr::runCleanUp(PxRequest& request) noexcept {
    try {
        request.performCleanUp();
    } catch (std::exception const& ex) {
        LgLog::outputEntry(LgLog::ERROR,
                           "Clean-up of a " + request.getRequestType() + " request failed: " + ex.what());
    } catch (...) {
        LgLog::outputEntry(LgLog::ERROR, "Clean-up of a " + request.getRequestType() + " request failed");
    }
}

// ---- Choice of the next request ---------------------------------------------

void PxRequestMgr::takeOutOfQueue(PxRequest& request) {
    if (_exclusive == &request)
        _exclusiveRunning = true; // taken by whoever ends it; nobody else may start it
    else if (request._held) {
        _heldBack.erase(std::find(_heldBack.begin(), _heldBack.end(), &request));
        request._held = false;
    } else
        (request._nested ? _nestedQueue : _topQueue).remove(request);
}

void PxRequestMgr::setExclusive(PxRequest* request) noexcept {
    _exclusive = request;
    _hasExclusive.store(request != nullptr, std::memory_order_seq_cst);
}

// The exclusive request has ended: what it held back is queued, up to the
// next exclusive request, which is now first in line.
void PxRequestMgr::admitHeldBack() {
    while (!_heldBack.empty() && !_exclusive) {
        PxRequest* const request = _heldBack.front();
        _heldBack.pop_front();
        request->_held = false;
        if (request->_exclusive)
            setExclusive(request);
        else
            _topQueue.push(*request);
    }
}

bool PxRequestMgr::canStartExclusive() const noexcept {
    return _exclusive && !_exclusiveRunning && _topQueue.isEmpty() &&
           _nbRunning.load(std::memory_order_seq_cst) == 0;
}

// Sorts the posted requests into the queues; true if there were any.
bool PxRequestMgr::drainInbox() {
    if (!_inbox.load(std::memory_order_seq_cst))
        return false;
    PxRequest* newestFirst = _inbox.exchange(nullptr, std::memory_order_seq_cst);
    PxRequest* oldestFirst = nullptr;
    while (newestFirst)
        oldestFirst = std::exchange(newestFirst, std::exchange(newestFirst->_queueNext, oldestFirst));
    while (PxRequest* const request = oldestFirst) {
        oldestFirst = request->_queueNext;
        request->_seq = _nextSeq++;
        if (request->_nested) {
            request->_state.fetch_and(~unsigned(PxRequest::LOCAL), std::memory_order_acq_rel);
            _nestedQueue.push(*request);
        } else if (_exclusive) {
            request->_held = true;
            _heldBack.push_back(request);
        } else if (request->_exclusive)
            setExclusive(request);
        else
            _topQueue.push(*request);
    }
    return true;
}

PxRequest* PxRequestMgr::takeForWorker() {
    PxRequest const* const front =
        PxRequestQueue::getFirstToStart(_nestedQueue.getFront(), _topQueue.getFront());
    if (!front || front->_priority < _topPostedPriority.load(std::memory_order_relaxed))
        drainInbox();
    if (canStartExclusive()) {
        _exclusiveRunning = true;
        return _exclusive;
    }
    PxRequest* const next = PxRequestQueue::getFirstToStart(_nestedQueue.getFront(), _topQueue.getFront());
    if (next)
        takeOutOfQueue(*next);
    return next;
}

// A worker's own request is suspended below the wait: it helps only with
// requests posted, directly or not, from that request or from the awaited
// one, which those wait for anyway. Anything else might wait for the
// suspended request and never end.
PxRequest* PxRequestMgr::takeForHelper(PxRequest const& awaited, PxRequest const* current) {
    PxRequest* const help = _nestedQueue.findFirst(
        [&](PxRequest const& request) {
            return request.descendsFrom(current) || request.descendsFrom(&awaited);
        },
        HELP_SCAN_LIMIT);
    if (help)
        takeOutOfQueue(*help);
    return help;
}

std::size_t PxRequestMgr::countStartable() const noexcept {
    return _nestedQueue.getSize() + _topQueue.getSize() + (canStartExclusive() ? 1 : 0);
}

// Wakes workers for queued work while places are free, and only as many as
// there is work for; starts one when none is idle (the pool grows to its
// size on demand, and beyond it only while workers are blocked).
PxRequestMgr::Wakeups PxRequestMgr::planWakeups() {
    Wakeups wakeups;
    if (_stopping.load(std::memory_order_relaxed))
        return wakeups;
    drainInbox();
    std::size_t const startable = countStartable();
    while (_nbBusy + _nbComing + _nbStarting < _nbSlots && startable > std::size_t(_nbComing + _nbStarting)) {
        if (_nbIdle > _nbComing) {
            ++_nbComing;
            ++wakeups.nbWorkers;
        } else {
            ++_nbStarting;
            _threads.emplace_back([this] { runWorker(); });
        }
    }
    publishFreePlaces();
    return wakeups;
}

void PxRequestMgr::publishFreePlaces() noexcept {
    _nbFreePlaces.store(_nbSlots - _nbBusy - _nbComing - _nbStarting, std::memory_order_seq_cst);
}

void PxRequestMgr::wake(Wakeups const& wakeups) {
    for (int i = 0; i < wakeups.nbWorkers; ++i)
        _workCv.notify_one();
    if (wakeups.waiters)
        _waitCv.notify_all();
}

// ---- The pool ---------------------------------------------------------------

void PxRequestMgr::runWorker() {
    ThreadState& thread = t_thread;
    thread.workerOf = this;
    thread.poolOf = this;
    std::unique_lock lock(_mutex);
    --_nbStarting;
    publishFreePlaces();
    while (!_stopping.load(std::memory_order_relaxed)) {
        // Looks at the inbox after publishing its place (see mayNeedWakeups).
        PxRequest* request = _nbBusy < _nbSlots ? takeForWorker() : nullptr;
        if (!request) {
            ++_nbIdle;
            _workCv.wait(lock);
            --_nbIdle;
            if (_nbComing > 0)
                --_nbComing;
            publishFreePlaces();
            continue;
        }
        ++_nbBusy;
        publishFreePlaces();
        thread.holdsPlace = true;
        // From one request to the next without giving up the place, so that
        // posters see no place to fill meanwhile.
        while (request) {
            execute(*request, lock);
            lock = lockSpinning(_mutex);
            request = thread.holdsPlace && _nbBusy <= _nbSlots && !_stopping.load(std::memory_order_relaxed)
                          ? takeForWorker()
                          : nullptr;
        }
        if (thread.holdsPlace)
            --_nbBusy;
        publishFreePlaces();
        thread.holdsPlace = false;
        thread.placeLent = false;
    }
}

void PxRequestMgr::workerBlocked() {
    int& _blockedCount = t_thread.blockedCount;
    if (_blockedCount != 0 && _blockedCount != 1)
        QV_ASSERT(_blockedCount == 0);
    if (++_blockedCount != 1)
        return;
    ThreadState& thread = t_thread;
    shareLocal();
    if (thread.poolOf != this || !thread.holdsPlace)
        return;
    std::unique_lock lock(_mutex);
    thread.holdsPlace = false;
    thread.placeLent = true;
    --_nbBusy;
    Wakeups const wakeups = planWakeups(); // publishes the freed place
    lock.unlock();
    wake(wakeups);
}

void PxRequestMgr::workerUnblocked() {
    int& _blockedCount = t_thread.blockedCount;
    QV_ASSERT(_blockedCount > 0);
    if (--_blockedCount != 0)
        return;
    ThreadState& thread = t_thread;
    if (thread.poolOf != this || !thread.placeLent)
        return;
    // Takes its place back at once, even over the pool's size for a while:
    // waiting for one could hold whatever this worker still holds.
    std::lock_guard lock(_mutex);
    thread.placeLent = false;
    thread.holdsPlace = true;
    ++_nbBusy;
    publishFreePlaces();
}

void PxRequestMgr::stop() {
    {
        std::lock_guard lock(_mutex);
        if (_stopping.exchange(true))
            return;
    }
    _workCv.notify_all();
    _waitCv.notify_all();
    for (;;) {
        // No worker starts once stopping, but one may have started just before.
        std::vector<std::thread> threads;
        {
            std::lock_guard lock(_mutex);
            threads.swap(_threads);
        }
        if (threads.empty())
            break;
        for (std::thread& thread : threads)
            thread.join();
    }
    // What never started ends as cancelled.
    for (;;) {
        std::unique_lock lock(_mutex);
        drainInbox();
        PxRequest* request = PxRequestQueue::getFirstToStart(_nestedQueue.getFront(), _topQueue.getFront());
        if (!request && _exclusive && !_exclusiveRunning)
            request = _exclusive;
        if (!request)
            break;
        takeOutOfQueue(*request);
        request->cancel();
        execute(*request, lock);
    }
}

} // namespace Qv
