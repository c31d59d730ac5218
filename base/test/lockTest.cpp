#include "lkCounter.h"
#include "lkLock.h"

#include <atomic>
#include <future>
#include <gtest/gtest.h>
#include <mutex>
#include <thread>
#include <vector>

using namespace Qv;

namespace {

// Whether another thread can take the lock right now.
template <class Lock>
bool isFreeForAnotherThread(Lock& lock) {
    return std::async(std::launch::async,
                      [&] {
                          bool const taken = lock.tryLock();
                          if (taken)
                              lock.unlock();
                          return taken;
                      })
        .get();
}

} // namespace

TEST(LkCounterTest, OperationsReturnTheNewValueAndCasReportsTheCurrentOne) {
    LkCounter<int> counter(5);
    EXPECT_EQ(counter.increment(), 6);
    EXPECT_EQ(counter.decrement(), 5);
    EXPECT_EQ(counter.decrement(), 4);

    struct Case {
        int expected, desired;
        bool swapped;
        int after, expectedAfter;
    };
    // Runs in sequence on the same counter (value 4 at start).
    Case const cases[] = {
        {4, 10, true, 10, 4},
        {4, 11, false, 10, 10},
        {10, 0, true, 0, 10},
    };
    for (auto const& c : cases) {
        int expected = c.expected;
        EXPECT_EQ(counter.compareAndSwap(expected, c.desired), c.swapped) << c.expected << "->" << c.desired;
        EXPECT_EQ(counter.get(), c.after);
        EXPECT_EQ(expected, c.expectedAfter);
    }
    counter.set(-3);
    EXPECT_EQ(counter.increment(), -2);
}

TEST(LkCounterTest, NoUpdateIsLostUnderThreads) {
    LkCounter<int> counter;
    LkCounter<int> casCounter;
    constexpr int kThreads = 4;
    constexpr int kRounds = 50000;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < kRounds; ++i) {
                if (t % 2 == 0)
                    counter.increment();
                else
                    counter.increment(), counter.decrement(), counter.increment();
                int value = casCounter.get();
                while (!casCounter.compareAndSwap(value, value + 1))
                    ;
            }
        });
    }
    for (auto& t : threads)
        t.join();
    EXPECT_EQ(counter.get(), kThreads * kRounds);
    EXPECT_EQ(casCounter.get(), kThreads * kRounds);
}

TEST(LkLockTest, LocksCarryTheirName) {
    LkLock lock("TilePostProcess");
    LkRecLock recLock("ExpParserLock");
    LkRecLockWindows windowsLock("SequencePathParserLock");
    EXPECT_EQ(lock.getName(), "TilePostProcess");
    EXPECT_EQ(recLock.getName(), "ExpParserLock");
    EXPECT_EQ(windowsLock.getName(), "SequencePathParserLock");
}

TEST(LkLockTest, GuardsExcludeOtherThreadsForTheirScope) {
    LkLock lock("guarded");
    {
        LkLock::Guard guard(lock);
        EXPECT_FALSE(isFreeForAnotherThread(lock));
    }
    EXPECT_TRUE(isFreeForAnotherThread(lock));
    {
        std::unique_lock<LkLock> unique(lock);
        EXPECT_FALSE(isFreeForAnotherThread(lock));
        unique.unlock();
        EXPECT_TRUE(isFreeForAnotherThread(lock));
    }

    int shared = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 20000; ++i) {
                LkLock::Guard guard(lock);
                ++shared;
            }
        });
    }
    for (auto& t : threads)
        t.join();
    EXPECT_EQ(shared, 80000);
}

TEST(LkLockTest, RecursiveLockIsReenteredByItsOwnerOnly) {
    LkRecLock lock("recursive");
    {
        LkRecLock::Guard outer(lock);
        {
            // A nested parse on the same thread takes the lock again.
            LkRecLock::Guard inner(lock);
            EXPECT_TRUE(lock.tryLock());
            lock.unlock();
            EXPECT_FALSE(isFreeForAnotherThread(lock));
        }
        EXPECT_FALSE(isFreeForAnotherThread(lock)) << "released one level too many";
    }
    EXPECT_TRUE(isFreeForAnotherThread(lock));
}
