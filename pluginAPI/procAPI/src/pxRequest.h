#pragma once
// A unit of work for the request manager. The poster creates it, posts it,
// waits for it if it needs its outcome, and releases it through the manager.
// Its steps, in order, on the thread that runs it:
//   performExecute      the work (a worker, or a waiter that runs it inline)
//   completeExecution   only when performExecute succeeded
//   postExecute         whatever the outcome
//   performCleanUp      once the request is both finished and released
#include "rcBase.h"
#include "rcShdPtr.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>

namespace Qv {

// Counted in the object itself (RCBase), not in a separate control block:
// a request is made, posted and dropped by the thousand, and the block's
// allocation and double counts were a tenth of the cost of a small one.
class PxRequest : public RCBase<LkCounter<int>> {
public:
    // Requests come and go by the thousand: their blocks are recycled per
    // thread instead of going back to the general heap every time.
    static void* operator new(std::size_t size);
    static void operator delete(void* block, std::size_t size) noexcept;

    PxRequest() noexcept = default;
    PxRequest(PxRequest const&) = delete;
    PxRequest& operator=(PxRequest const&) = delete;
    ~PxRequest() override;

    virtual std::string getRequestType() const;
    // Added to the priority given at post: higher runs first.
    virtual int getPriorityLevel() const;
    virtual void performExecute() = 0;
    virtual void completeExecution();
    virtual void postExecute();
    virtual void performCleanUp();
    // A state change: runs only while no other request runs, and requests
    // posted from outside any request after it wait until it is done.
    virtual bool isExclusive() const;

    // Finished, whatever the outcome.
    bool isDone() const noexcept { return (_state.load(std::memory_order_acquire) & STAGE) == DONE; }
    // cancel() was called, directly or by releasing the request unfinished.
    bool isCancelled() const noexcept { return _cancelled.load(std::memory_order_acquire); }
    // Finished by an exception, cancellation included.
    bool hasFailed() const noexcept { return isDone() && _error != nullptr; }
    // Not started yet: it never runs. Running: it stops at its next check
    // for cancellation. Requests posted from it stop too.
    void cancel() noexcept { _cancelled.store(true, std::memory_order_release); }

private:
    friend class PxRequestMgr;
    friend class PxRequestQueue;

    // The stage, and flags that change without the manager's lock.
    enum State : unsigned {
        CREATED = 0,
        QUEUED = 1,
        RUNNING = 2,
        DONE = 3,
        STAGE = 3,
        RELEASED = 4,    // the poster is done with it
        HAS_WAITERS = 8, // someone sleeps until it is done
        // With QUEUED: not shared yet. In its poster's hand, run by its
        // poster (the stage stays QUEUED until it is DONE), or on its way to
        // the manager's inbox; no other thread may take it meanwhile.
        LOCAL = 16,
    };

    // This request or one it was posted from is cancelled.
    bool isCancelledWithAncestors() const noexcept;
    // `ancestor` is this request or one it was posted from, directly or not.
    bool descendsFrom(PxRequest const* ancestor) const noexcept;

    std::atomic<unsigned> _state{CREATED};
    std::atomic<bool> _cancelled{false};
    // Written before DONE is published, read only after it is seen.
    std::exception_ptr _error;

    // Under the manager's lock.
    bool _nested = false;
    bool _exclusive = false;
    bool _held = false;
    int _priority = 0;
    std::uint64_t _seq = 0;
    PxRequest* _queuePrev = nullptr;
    PxRequest* _queueNext = nullptr;

    // Fixed when the request starts its life in the manager. The chain of
    // posters stays alive as long as anyone may walk it (checks for
    // cancellation, helpers): a request run above its poster on the same
    // thread needs no hold on it; one that is shared takes a hold on each
    // link of its chain that has none yet.
    PxRequest* _parent = nullptr;
    RCShdPtr<PxRequest> _parentOwner;
    // The manager's hold while the request is queued or running.
    RCShdPtr<PxRequest> _self;
    // The request this one interrupted on the thread that runs it.
    PxRequest* _interrupted = nullptr;
};

} // namespace Qv
