// The request manager's scheduling: nested waits, cancellation, failures,
// blocked workers, priorities, exclusive requests and the request's life.
// Each test builds a pool of its own size, so the process-wide one is left alone.
#include "assertions.h"
#include "pxEx.h"
#include "pxRequestMgr.h"
#include "pxWorkerBlockedGuard.h"
#include "rcExUtil.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <gtest/gtest.h>
#include <latch>
#include <mutex>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace Qv {
namespace {

using namespace std::chrono_literals;

// A request whose work is a function, counting the steps it went through.
class FnRequest : public PxRequest {
public:
    explicit FnRequest(std::function<void()> work, int level = 0) : _work(std::move(work)), _level(level) {}

    int getPriorityLevel() const override { return _level; }
    void performExecute() override {
        ++executed;
        _work();
    }
    void completeExecution() override { ++completed; }
    void postExecute() override { ++posted; }
    void performCleanUp() override { ++cleanedUp; }

    std::atomic<int> executed{0};
    std::atomic<int> completed{0};
    std::atomic<int> posted{0};
    std::atomic<int> cleanedUp{0};

private:
    std::function<void()> _work;
    int _level;
};

using FnRequestPtr = PxRequestPtr<FnRequest>;

FnRequestPtr makeRequest(std::function<void()> work, int level = 0) {
    return FnRequestPtr(new FnRequest(std::move(work), level));
}

// A request that blocks the worker running it until opened.
struct Gate {
    std::latch started{1};
    std::promise<void> open;
    std::shared_future<void> opened = open.get_future().share();

    FnRequestPtr makeBlocker() {
        return makeRequest([this] {
            started.count_down();
            opened.wait();
        });
    }
};

template <class Ex>
std::string reasonOf(std::function<void()> const& action) {
    try {
        action();
    } catch (Ex const& ex) {
        return ex.getReason();
    }
    return "<nothing thrown>";
}

// A chain of requests, each posting the next and waiting for it.
void postChain(PxRequestMgr& mgr, int depth, std::atomic<int>& deepest) {
    deepest = std::max(deepest.load(), depth);
    if (depth == 0)
        return;
    FnRequestPtr const next = makeRequest([&mgr, depth, &deepest] { postChain(mgr, depth - 1, deepest); });
    mgr.postRequest(next, 0);
    mgr.waitForRequest(next);
    mgr.releaseRequest(next);
}

TEST(PxRequestMgrTest, nestedWaitsNeverDeadlockOnOneWorker) {
    struct Case {
        char const* name;
        bool applicationThreadWaits; // else the worker runs the whole chain alone
    };
    for (Case const& c : {Case{"worker alone", false}, Case{"application thread joins", true}}) {
        SCOPED_TRACE(c.name);
        PxRequestMgr mgr(1);
        std::atomic<int> deepest{0};
        std::promise<void> finished;
        FnRequestPtr const root = makeRequest([&] {
            postChain(mgr, 200, deepest);
            finished.set_value();
        });
        mgr.postRequest(root, 0);
        if (c.applicationThreadWaits)
            mgr.waitForRequest(root);
        ASSERT_EQ(finished.get_future().wait_for(60s), std::future_status::ready);
        mgr.waitForRequest(root);
        mgr.releaseRequest(root);
        EXPECT_EQ(deepest.load(), 200);
    }
}

TEST(PxRequestMgrTest, waitingForAnUnstartedRequestRunsItOnTheWaitingThread) {
    PxRequestMgr mgr(1);
    Gate gate;
    FnRequestPtr const blocker = gate.makeBlocker();
    mgr.postRequest(blocker, 0);
    gate.started.wait();

    std::thread::id ranOn;
    bool wasWorker = false;
    FnRequestPtr const request = makeRequest([&] {
        ranOn = std::this_thread::get_id();
        wasWorker = mgr.isWorkerThreadCurrent();
    });
    mgr.postRequest(request, 0);
    EXPECT_FALSE(mgr.isWorkerThreadCurrent());
    mgr.waitForRequest(request);
    EXPECT_EQ(ranOn, std::this_thread::get_id());
    EXPECT_TRUE(wasWorker);
    EXPECT_FALSE(mgr.isWorkerThreadCurrent());

    gate.open.set_value();
    mgr.waitForRequest(blocker);
}

TEST(PxRequestMgrTest, cancelledRequestsStopAndTheirWaitersAreTold) {
    using Loop = std::function<void()>;
    struct Case {
        char const* name;
        // Starts `loop` (work that runs until cancelled) as a request, cancels
        // something, and returns the request to wait for.
        std::function<FnRequestPtr(PxRequestMgr&, Loop const& loop)> cancel;
        bool loopStarts;
    };
    std::vector<Case> const cases = {
        {"before it starts",
         [](PxRequestMgr& mgr, Loop const& loop) {
             Gate gate;
             FnRequestPtr const blocker = gate.makeBlocker();
             mgr.postRequest(blocker, 0);
             gate.started.wait();
             FnRequestPtr const victim = makeRequest(loop);
             mgr.postRequest(victim, 0);
             victim->cancel();
             gate.open.set_value();
             mgr.waitForRequest(blocker);
             return victim;
         },
         false},
        {"while it runs",
         [](PxRequestMgr& mgr, Loop const& loop) {
             std::latch started(1);
             FnRequestPtr const victim = makeRequest([&] {
                 started.count_down();
                 loop();
             });
             mgr.postRequest(victim, 0);
             started.wait();
             victim->cancel();
             return victim;
         },
         true},
        {"through the request it was posted from",
         [](PxRequestMgr& mgr, Loop const& loop) {
             std::latch started(1);
             FnRequestPtr const parent = makeRequest([&] {
                 FnRequestPtr const child = makeRequest([&] {
                     started.count_down();
                     loop();
                 });
                 mgr.postRequest(child, 0);
                 mgr.waitForRequest(child);
             });
             mgr.postRequest(parent, 0);
             started.wait();
             parent->cancel();
             return parent;
         },
         true},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.name);
        // One worker: while the blocker holds it, nothing else can start.
        PxRequestMgr mgr(1);
        std::atomic<int> loops{0};
        Loop const loop = [&] {
            for (;;) {
                mgr.checkCancellation();
                ++loops;
                std::this_thread::sleep_for(100us);
            }
        };
        FnRequestPtr const awaited = c.cancel(mgr, loop);
        EXPECT_THROW(mgr.waitForRequest(awaited), PxEx::ExRequestCancelled);
        EXPECT_TRUE(awaited->isDone());
        EXPECT_TRUE(awaited->hasFailed());
        EXPECT_EQ(awaited->executed, c.loopStarts ? 1 : 0);
        EXPECT_EQ(awaited->completed, 0);
        EXPECT_EQ(awaited->posted, 1);
        if (!c.loopStarts) {
            EXPECT_EQ(loops, 0);
        }
        mgr.releaseRequest(awaited);
        EXPECT_EQ(awaited->cleanedUp, 1);
    }
}

class TestFailure : public ExBase {
public:
    using ExBase::ExBase;
    QV_EX_CLONE_RAISE(TestFailure)
};

TEST(PxRequestMgrTest, aFailureReachesEveryWaiter) {
    struct Case {
        char const* name;
        std::function<void()> fail;
        bool ownCopies; // each waiter gets its own exception object
    };
    std::vector<Case> const cases = {
        {"system exception", [] { throw TestFailure(__FILE__, __LINE__, "tile lost"); }, true},
        {"other exception", [] { throw std::runtime_error("tile lost"); }, false},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.name);
        PxRequestMgr mgr(2);
        Gate gate;
        FnRequestPtr const request = makeRequest([&] {
            gate.started.count_down();
            gate.opened.wait();
            c.fail();
        });
        mgr.postRequest(request, 0);
        gate.started.wait();

        std::mutex mutex;
        std::vector<std::string> reasons;
        std::set<void const*> objects;
        std::vector<std::thread> waiters;
        std::latch waiting(3);
        std::latch caught(3);
        for (int i = 0; i < 3; ++i)
            waiters.emplace_back([&] {
                waiting.count_down();
                try {
                    mgr.waitForRequest(request);
                } catch (std::exception const& ex) {
                    {
                        std::lock_guard lock(mutex);
                        reasons.push_back(ex.what());
                        objects.insert(&ex);
                        EXPECT_EQ(c.ownCopies, dynamic_cast<TestFailure const*>(&ex) != nullptr);
                    }
                    // All three objects alive at once, so that addresses tell them apart.
                    caught.arrive_and_wait();
                }
            });
        waiting.wait();
        gate.open.set_value();
        for (std::thread& waiter : waiters)
            waiter.join();
        EXPECT_EQ(reasons, std::vector<std::string>(3, "tile lost"));
        if (c.ownCopies) {
            EXPECT_EQ(objects.size(), 3u);
        }
        EXPECT_EQ(request->completed, 0);
        EXPECT_EQ(request->posted, 1);
        mgr.releaseRequest(request);
    }
}

TEST(PxRequestMgrTest, aBlockedWorkerLetsAnotherRequestRun) {
    PxRequestMgr mgr(1);
    std::promise<void> produced;
    std::shared_future<void> product = produced.get_future().share();
    std::latch blocked(1);
    bool gotProduct = false;
    FnRequestPtr const consumer = makeRequest([&] {
        PxWorkerBlockedGuard guard(mgr);
        blocked.count_down();
        gotProduct = product.wait_for(30s) == std::future_status::ready;
    });
    FnRequestPtr const producer = makeRequest([&] { produced.set_value(); });
    mgr.postRequest(consumer, 0);
    blocked.wait();
    mgr.postRequest(producer, 0);
    // Not mgr.waitForRequest: the application thread would run the producer itself.
    EXPECT_EQ(product.wait_for(30s), std::future_status::ready);
    mgr.waitForRequest(consumer);
    EXPECT_TRUE(gotProduct);
    mgr.releaseRequest(consumer);
    mgr.releaseRequest(producer);
}

TEST(PxRequestMgrTest, thePoolRunsAsManyRequestsAtOnceAsItHasWorkers) {
    for (int nbWorkers : {1, 2, 3}) {
        SCOPED_TRACE(nbWorkers);
        PxRequestMgr mgr(nbWorkers);
        EXPECT_EQ(mgr.getNbWorkers(), nbWorkers);
        std::atomic<int> running{0};
        std::atomic<int> most{0};
        std::latch finished(12);
        std::vector<FnRequestPtr> requests;
        for (int i = 0; i < 12; ++i) {
            requests.push_back(makeRequest([&] {
                int const now = ++running;
                int seen = most;
                while (now > seen && !most.compare_exchange_weak(seen, now)) {
                }
                std::this_thread::sleep_for(5ms);
                --running;
                finished.count_down();
            }));
            mgr.postRequest(requests.back(), 0);
        }
        finished.wait();
        EXPECT_EQ(most.load(), nbWorkers);
        for (FnRequestPtr const& request : requests)
            mgr.releaseRequest(request);
    }
}

TEST(PxRequestMgrTest, blockedCountAssertions) {
    struct Case {
        char const* name;
        int enters;
        int leaves;
        char const* fault; // nullptr: balanced use
    };
    for (Case const& c : {Case{"once", 1, 1, nullptr}, Case{"nested once", 2, 2, nullptr},
                          Case{"nested twice", 3, 0, "_blockedCount == 0"},
                          Case{"leave without enter", 0, 1, "_blockedCount > 0"},
                          Case{"leave twice", 1, 2, "_blockedCount > 0"}}) {
        SCOPED_TRACE(c.name);
        PxRequestMgr mgr(1);
        std::string reason;
        // On a thread of its own: the count belongs to the thread.
        std::thread([&] {
            reason = reasonOf<AssertionsEx::ExAssertionFailed>([&] {
                for (int i = 0; i < c.enters; ++i)
                    mgr.workerBlocked();
                for (int i = 0; i < c.leaves; ++i)
                    mgr.workerUnblocked();
            });
        }).join();
        EXPECT_EQ(reason, c.fault ? c.fault : "<nothing thrown>");
    }
}

TEST(PxRequestMgrTest, higherPrioritiesStartFirstAndEqualOnesInPostOrder) {
    PxRequestMgr mgr(1);
    Gate gate;
    FnRequestPtr const blocker = gate.makeBlocker();
    mgr.postRequest(blocker, 0);
    gate.started.wait();

    struct Post {
        char const* name;
        int priority;
        int level; // the request's own getPriorityLevel
    };
    std::vector<Post> const posts = {{"a", 0, 0},  {"b", 5, 0},  {"c", 0, 0}, {"d", 2, 3},
                                     {"e", -1, 0}, {"f", 10, 0}, {"g", 0, 5}};
    std::mutex mutex;
    std::string order;
    std::latch finished(std::ptrdiff_t(posts.size()));
    std::vector<FnRequestPtr> requests;
    for (Post const& post : posts) {
        requests.push_back(makeRequest(
            [&, name = post.name] {
                std::lock_guard lock(mutex);
                order += name;
                finished.count_down();
            },
            post.level));
        mgr.postRequest(requests.back(), post.priority);
    }
    gate.open.set_value();
    finished.wait();
    mgr.waitForRequest(blocker);
    EXPECT_EQ(order, "fbdgace");
    for (FnRequestPtr const& request : requests)
        mgr.releaseRequest(request);
    mgr.releaseRequest(blocker);
}

class ExclusiveRequest : public FnRequest {
public:
    using FnRequest::FnRequest;
    bool isExclusive() const override { return true; }
};

TEST(PxRequestMgrTest, anExclusiveRequestRunsAloneAndHoldsBackLaterPosts) {
    PxRequestMgr mgr(2);
    std::mutex mutex;
    std::vector<std::string> events;
    auto note = [&](std::string event) {
        std::lock_guard lock(mutex);
        events.push_back(std::move(event));
    };
    Gate gate;
    std::latch exclusivePosted(1);
    // Running before the exclusive request, and posting more after it: those
    // are part of work already started and must not wait behind it.
    FnRequestPtr const before = makeRequest([&] {
        note("before starts");
        gate.started.count_down();
        exclusivePosted.wait();
        FnRequestPtr const child = makeRequest([&] { note("child"); });
        mgr.postRequest(child, 0);
        mgr.waitForRequest(child);
        gate.opened.wait();
        note("before ends");
    });
    PxRequestPtr<ExclusiveRequest> const exclusive(new ExclusiveRequest([&] { note("exclusive"); }));
    FnRequestPtr const after = makeRequest([&] { note("after"); }, 100);

    mgr.postRequest(before, 0);
    gate.started.wait();
    mgr.postRequest(exclusive, 0);
    mgr.postRequest(after, 0);
    exclusivePosted.count_down();
    std::this_thread::sleep_for(20ms); // gives the held-back request a chance to jump the queue
    gate.open.set_value();
    mgr.waitForRequest(after);
    mgr.waitForRequest(exclusive);
    EXPECT_EQ(events,
              (std::vector<std::string>{"before starts", "child", "before ends", "exclusive", "after"}));
    for (PxRequestPtrBase const* request :
         std::initializer_list<PxRequestPtrBase const*>{&before, &exclusive, &after})
        mgr.releaseRequest(*request);
}

TEST(PxRequestMgrTest, releaseCleansUpOnceTheRequestIsFinished) {
    struct Case {
        char const* name;
        bool post;
        bool waitBeforeRelease;
        bool executes;
    };
    for (Case const& c : {Case{"finished", true, true, true}, Case{"never posted", false, false, false},
                          Case{"queued", true, false, false}}) {
        SCOPED_TRACE(c.name);
        PxRequestMgr mgr(1);
        Gate gate;
        FnRequestPtr const blocker = gate.makeBlocker();
        mgr.postRequest(blocker, 0);
        gate.started.wait();

        FnRequestPtr const request = makeRequest([] {});
        if (c.post)
            mgr.postRequest(request, 0);
        if (c.waitBeforeRelease)
            mgr.waitForRequest(request);
        mgr.releaseRequest(request);
        mgr.releaseRequest(request); // a second release changes nothing
        EXPECT_TRUE(request->isDone());
        EXPECT_EQ(request->cleanedUp, 1);
        EXPECT_EQ(request->executed, c.executes ? 1 : 0);
        EXPECT_EQ(request->isCancelled(), !c.executes);
        if (!c.executes) {
            EXPECT_THROW(mgr.waitForRequest(request), PxEx::ExRequestCancelled);
        }
        // Neither posted again nor after its release.
        EXPECT_EQ(reasonOf<AssertionsEx::ExAssertionFailed>([&] { mgr.postRequest(request, 0); }),
                  "isNewAndUnreleased");
        gate.open.set_value();
        mgr.waitForRequest(blocker);
        mgr.releaseRequest(blocker);
    }
}

TEST(PxRequestMgrTest, aRunningRequestIsCleanedUpWhenItEnds) {
    PxRequestMgr mgr(1);
    std::atomic<int> loops{0};
    std::latch started(1);
    FnRequestPtr const request = makeRequest([&] {
        started.count_down();
        for (;;) {
            mgr.checkCancellation();
            ++loops;
            std::this_thread::sleep_for(100us);
        }
    });
    mgr.postRequest(request, 0);
    started.wait();
    mgr.releaseRequest(request);
    EXPECT_TRUE(request->isCancelled());
    EXPECT_THROW(mgr.waitForRequest(request), PxEx::ExRequestCancelled);
    EXPECT_EQ(request->cleanedUp, 1);
}

TEST(PxRequestMgrTest, misuseIsReportedNotHung) {
    PxRequestMgr mgr(1);
    // A request waiting for itself would never end.
    PxRequestPtr<FnRequest> self;
    self = makeRequest([&] { mgr.waitForRequest(self); });
    mgr.postRequest(self, 0);
    EXPECT_EQ(reasonOf<AssertionsEx::ExAssertionFailed>([&] { mgr.waitForRequest(self); }),
              "!isRunningOnThisThread");
    mgr.releaseRequest(self);
    self.reset();

    FnRequestPtr const null;
    EXPECT_THROW(mgr.postRequest(null, 0), RCEx::ExNullPtr);
    EXPECT_THROW(mgr.waitForRequest(null), RCEx::ExNullPtr);
    EXPECT_THROW((void)null->executed, RCEx::ExNullPtr);
    EXPECT_NO_THROW(mgr.checkCancellation()); // no request on this thread
}

} // namespace
} // namespace Qv
