// PxParallelProc: every task processed once, the calling worker taking part
// in task order, failures after the other tasks are safely over.
#include "assertions.h"
#include "cbHandler.h"
#include "geRectangle.h"
#include "pxParallelProc.h"
#include "pxRequestMgr.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <gtest/gtest.h>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace Qv {
namespace {

template <class Task>
class FnHandler : public CbHandler<Task const> {
public:
    explicit FnHandler(std::function<void(Task const&)> fn) : _fn(std::move(fn)) {}
    void call(Task const& task) override { _fn(task); }

private:
    std::function<void(Task const&)> _fn;
};

class FnRequest : public PxRequest {
public:
    explicit FnRequest(std::function<void()> work) : _work(std::move(work)) {}
    void performExecute() override { _work(); }

private:
    std::function<void()> _work;
};

// A block of a frame and its write slot, as a render splits a frame.
using Block = std::pair<GeRectangle<int>, unsigned int>;

TEST(PxParallelProcTest, everyTaskIsProcessedOnce) {
    for (int nbWorkers : {1, 2, 4}) {
        for (unsigned nbTasks : {0u, 1u, 7u, 100u}) {
            SCOPED_TRACE(testing::Message() << nbWorkers << " workers, " << nbTasks << " tasks");
            PxRequestMgr mgr(nbWorkers);
            std::vector<std::atomic<int>> visits(nbTasks);
            std::atomic<long> area{0};
            FnHandler<Block> handler([&](Block const& block) {
                ++visits[block.second];
                area += block.first.getWidth() * block.first.getHeight();
            });
            PxParallelProc<Block> proc(&handler, mgr);
            for (unsigned i = 0; i < nbTasks; ++i)
                proc.addTask(Block{GeRectangle<int>{0, 16, int(i) * 8, int(i) * 8 + 8}, i});
            ASSERT_EQ(proc.getNbTasks(), nbTasks);
            if (nbTasks > 0) {
                EXPECT_EQ(proc.getTask(nbTasks - 1).second, nbTasks - 1);
            }
            proc.run();
            for (unsigned i = 0; i < nbTasks; ++i)
                EXPECT_EQ(visits[i], 1) << "task " << i;
            EXPECT_EQ(area, long(nbTasks) * 16 * 8);
            EXPECT_EQ(proc.getNbTasks(), 0u); // run() consumes its tasks
        }
    }
}

// With the only worker busy running the caller, no one else can take the
// tasks: the caller runs each, in task order.
TEST(PxParallelProcTest, theCallingWorkerRunsTasksInTaskOrder) {
    PxRequestMgr mgr(1);
    std::vector<int> order;
    std::thread::id caller;
    std::vector<std::thread::id> ranOn;
    struct Pointers {
        std::vector<int>* order;
        int index;
    };
    FnHandler<Pointers> handler([&](Pointers const& task) {
        task.order->push_back(task.index);
        ranOn.push_back(std::this_thread::get_id());
    });
    std::promise<void> ran;
    PxRequestPtr<FnRequest> const outer(new FnRequest([&] {
        caller = std::this_thread::get_id();
        PxParallelProc<Pointers> proc(&handler, mgr);
        for (int i = 0; i < 6; ++i)
            proc.addTask(Pointers{&order, i});
        proc.run();
        ran.set_value();
    }));
    mgr.postRequest(outer, 0);
    // Not mgr.waitForRequest first, which could run the outer request on this thread.
    ran.get_future().wait();
    mgr.waitForRequest(outer);
    EXPECT_EQ(order, (std::vector<int>{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(ranOn, std::vector<std::thread::id>(6, caller));
    mgr.releaseRequest(outer);
}

TEST(PxParallelProcTest, aFailedTaskIsRethrownOnceNoTaskRuns) {
    PxRequestMgr mgr(2);
    std::atomic<int> running{0};
    std::atomic<int> finished{0};
    FnHandler<int> handler([&](int const& task) {
        ++running;
        struct Leaving {
            std::atomic<int>& count;
            ~Leaving() { --count; }
        } const leaving{running};
        if (task == 3)
            throw std::runtime_error("task 3 failed");
        // The later tasks can only end by being cancelled (or after seconds):
        // how far they get must not depend on the scheduling.
        auto const giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(5);
        while (task > 3 && std::chrono::steady_clock::now() < giveUp) {
            mgr.checkCancellation();
            std::this_thread::sleep_for(std::chrono::microseconds(100));
        }
        ++finished;
    });
    PxParallelProc<int> proc(&handler, mgr);
    for (int i = 0; i < 40; ++i)
        proc.addTask(i);
    try {
        proc.run();
        ADD_FAILURE() << "run() did not fail";
    } catch (std::runtime_error const& ex) {
        EXPECT_EQ(std::string(ex.what()), "task 3 failed");
        EXPECT_EQ(running, 0);
    }
    EXPECT_EQ(finished, 3); // the rest were cancelled
    EXPECT_EQ(proc.getNbTasks(), 0u);
}

TEST(PxParallelProcTest, assertions) {
    struct Case {
        char const* name;
        std::function<void(PxParallelProc<int>&)> misuse;
        char const* expression;
    };
    std::vector<Case> const cases = {
        {"run without a callback", [](PxParallelProc<int>& proc) { proc.run(); }, "_procCb != 0"},
        {"task past the end", [](PxParallelProc<int>& proc) { (void)proc.getTask(2); },
         "taskIdx < _requests.size()"},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.name);
        PxRequestMgr mgr(1);
        PxParallelProc<int> proc(nullptr, mgr);
        proc.addTask(0);
        proc.addTask(1);
        try {
            c.misuse(proc);
            ADD_FAILURE() << "nothing thrown";
        } catch (AssertionsEx::ExAssertionFailed const& ex) {
            EXPECT_EQ(ex.getReason(), c.expression);
        }
    }
}

} // namespace
} // namespace Qv
