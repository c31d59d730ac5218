#pragma once
// Runs requests on a fixed pool of worker threads.
//
// - The pool has QV_WORKERS workers (default: the hardware threads) and
//   starts on the first post.
// - Waiting for a request that has not started runs it on the waiting
//   thread, which is a worker for that time. A worker waiting for one that
//   runs elsewhere helps with queued requests that the wait is for: those
//   posted, directly or not, from the request it runs or from the awaited
//   one. Nested waits thus never deadlock, even on one worker, and helping
//   never buries a request under one that might wait for it. Other threads
//   sleep instead of helping, so as not to run beyond the pool's size.
// - A worker that blocks on something other than the processor (file input)
//   brackets it with workerBlocked/workerUnblocked; its place in the pool
//   goes to another worker meanwhile (one is started if none is idle).
// - Posting takes no lock. A request posted from inside a request stays with
//   its poster at first: the poster often waits for it next and then runs it
//   itself without any lock. It is shared (queued, and workers woken for it)
//   at the poster's next call to the manager (a check for cancellation
//   included) or at the end of its request. Until then, and while its
//   poster runs it, other threads wait for it as for a running one.
// - Priorities: higher first, first posted first within a priority.
// - An exclusive request runs alone: it starts once the requests queued
//   before it have started and no request runs; requests posted from
//   outside any request after it are held back until it is done. Requests
//   posted from inside running requests are part of work already started
//   and are never held back.
#include "pxRequestPtr.h"
#include "pxRequestQueue.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <limits>
#include <mutex>
#include <thread>
#include <vector>

namespace Qv {

class PxRequestMgr {
public:
    static PxRequestMgr& getInstance();

    // A pool of its own with the given number of workers; tests use it.
    // The process uses getInstance().
    explicit PxRequestMgr(int nbWorkers);
    // Lets running requests finish, stops the workers, and cancels what is
    // still queued.
    virtual ~PxRequestMgr();
    PxRequestMgr(PxRequestMgr const&) = delete;
    PxRequestMgr& operator=(PxRequestMgr const&) = delete;

    // True on a worker, and on any thread while it runs a request.
    virtual bool isWorkerThreadCurrent() const;
    // The poster is done with the request: an unfinished one is cancelled,
    // and performCleanUp runs once it is finished (now, if it is).
    virtual void releaseRequest(PxRequestPtrBase const& request);
    // Queues the request at `priority` plus its own getPriorityLevel().
    // A request is posted at most once, and not after its release.
    virtual void postRequest(PxRequestPtrBase const& request, int priority);
    // Returns once the request is finished; rethrows its failure (a copy of
    // it for each waiter), PxEx::ExRequestCancelled if it was cancelled.
    // A request never posted is run here.
    virtual void waitForRequest(PxRequestPtrBase const& request);
    // Brackets a blocking section of the calling worker. Counted per thread:
    // entering a second time nested is tolerated, a third is a fault.
    virtual void workerBlocked();
    virtual void workerUnblocked();

    // Throws PxEx::ExRequestCancelled when the request running on this
    // thread, or any request it was posted from, is cancelled.
    void checkCancellation() const;
    int getNbWorkers() const noexcept { return _nbSlots; }

private:
    struct Wakeups {
        int nbWorkers = 0;
        bool waiters = false;
    };

    void runWorker();
    void stop();

    // Makes the request the manager's: its hold, its poster, its kind.
    void adopt(PxRequest& request, PxRequestPtrBase const& owner, int level, bool exclusive);
    // Holds the chain of posters of a request that may run elsewhere.
    static void ownAncestors(PxRequest& request) noexcept;
    // Runs a request taken out of the queues: called with the lock held,
    // returns without it.
    void execute(PxRequest& request, std::unique_lock<std::mutex>& lock);
    // Runs a request this thread has taken: marked running, or its own
    // local one.
    void run(PxRequest& request);
    // `counted`: the request is counted in _nbRunning.
    void finish(PxRequest& request, bool counted);
    static void runSteps(PxRequest& request);
    static void runCleanUp(PxRequest& request) noexcept;
    static void setStage(PxRequest& request, unsigned stage) noexcept;
    void waitUntilDone(PxRequestPtrBase const& requestPtr, PxRequest& request);
    static void assertNotRunningHere(PxRequest const& request, PxRequest const* current,
                                     std::unique_lock<std::mutex>& lock);
    void sleepUntilNews(PxRequest& awaited, std::unique_lock<std::mutex>& lock);

    // Without the lock.
    void pushToInbox(PxRequest& request) noexcept;
    bool mayNeedWakeups() const noexcept;
    void wakeForPostedWork();
    // Shares the request that this thread posted last and kept to itself.
    static void shareLocal();
    void share(PxRequest& request);

    // Under the lock.
    bool drainInbox();
    PxRequest* takeForWorker();
    PxRequest* takeForHelper(PxRequest const& awaited, PxRequest const* current);
    void takeOutOfQueue(PxRequest& request);
    void setExclusive(PxRequest* request) noexcept;
    void admitHeldBack();
    bool canStartExclusive() const noexcept;
    std::size_t countStartable() const noexcept;
    Wakeups planWakeups();
    void publishFreePlaces() noexcept;
    void wake(Wakeups const& wakeups);

    // The fields below are grouped by who writes them and how often, each
    // group on its own cache line: a post must not miss its cache for a
    // counter that the workers change at every request.
    static constexpr std::size_t CACHE_LINE = 64;

    int const _nbSlots;
    alignas(CACHE_LINE) std::mutex _mutex;
    std::condition_variable _workCv; // idle workers
    std::condition_variable _waitCv; // waiters with nothing to help with

    // Posted requests, newest first, linked through PxRequest::_queueNext:
    // posting takes no lock; whoever holds the lock sorts them into the
    // queues below, in post order.
    alignas(CACHE_LINE) std::atomic<PxRequest*> _inbox{nullptr};

    // Read at every post, seldom written.
    // The highest priority ever posted. A worker whose queues hold work of
    // that priority leaves the inbox alone: what waits there came later and
    // does not go first, and each drain would take the inbox's cache line
    // away from the posters.
    alignas(CACHE_LINE) std::atomic<int> _topPostedPriority{std::numeric_limits<int>::min()};
    // Readable without the lock, so that a post takes it only when a worker
    // could be woken or started (the pool's size minus the workers busy or
    // on their way), or a waiter sleeps.
    std::atomic<int> _nbFreePlaces;
    std::atomic<int> _nbSleepingWaiters{0};
    std::atomic<bool> _stopping{false};
    std::atomic<bool> _hasExclusive{false}; // _exclusive != nullptr

    // Threads running requests, wherever (a request run above another on
    // the same thread is not counted): counted down without the lock, since
    // only the start of an exclusive request depends on it.
    alignas(CACHE_LINE) std::atomic<int> _nbRunning{0};

    // Under _mutex. Workers start on demand, up to the pool's size.
    alignas(CACHE_LINE) PxRequestQueue _topQueue; // posted from outside any request
    PxRequestQueue _nestedQueue;                  // posted from a running request
    std::uint64_t _nextSeq = 0;
    std::vector<std::thread> _threads;
    int _nbBusy = 0;     // workers holding a place in the pool
    int _nbIdle = 0;     // workers asleep for want of work
    int _nbComing = 0;   // idle workers woken, not yet up
    int _nbStarting = 0; // workers started, not yet up
    // The first exclusive request in line: pending until nothing queued
    // before it waits and nothing runs, then running.
    PxRequest* _exclusive = nullptr;
    bool _exclusiveRunning = false;
    // Posted from outside any request after it, in post order, later
    // exclusive requests included.
    std::deque<PxRequest*> _heldBack;
    // Keeps whatever follows the manager in memory off the counter's line.
    alignas(CACHE_LINE) char _end = 0;
};

} // namespace Qv
