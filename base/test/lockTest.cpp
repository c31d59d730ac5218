#include "lkCounter.h"
#include "lkLock.h"

#include <future>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

using namespace Qv;

namespace {

// Whether another thread can take the lock right now.
template <class Lock>
bool isFreeForAnotherThread(Lock& lock) {
    return std::async(std::launch::async, [&] { return lock.tryLock() && (lock.unlock(), true); }).get();
}

TEST(LkCounterTest, NoUpdateIsLostUnderThreadsAndFailedSwapsGiveTheCurrentValue) {
    LkCounter<int> counter(5), casCounter;
    int expected = 4;
    EXPECT_FALSE(counter.compareAndSwap(expected, 10));
    EXPECT_EQ(expected, 5);
    EXPECT_TRUE(counter.compareAndSwap(expected, 0));
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 50000; ++i) {
                counter.increment(), counter.decrement(), counter.increment();
                int value = casCounter.get();
                while (!casCounter.compareAndSwap(value, value + 1))
                    ;
            }
        });
    for (auto& t : threads)
        t.join();
    EXPECT_EQ(counter.get(), 200000);
    EXPECT_EQ(casCounter.get(), 200000);
}

TEST(LkLockTest, GuardsExcludeOtherThreadsAndTheRecursiveLockIsReenteredByItsOwnerOnly) {
    LkLock lock("guarded");
    {
        LkLock::Guard guard(lock);
        EXPECT_FALSE(isFreeForAnotherThread(lock));
    }
    EXPECT_TRUE(isFreeForAnotherThread(lock));

    LkRecLock recursive("recursive");
    {
        LkRecLock::Guard outer(recursive);
        {
            // A nested parse on the same thread takes the lock again.
            LkRecLock::Guard inner(recursive);
            EXPECT_TRUE(recursive.tryLock());
            recursive.unlock();
        }
        EXPECT_FALSE(isFreeForAnotherThread(recursive)) << "released one level too many";
    }
    EXPECT_TRUE(isFreeForAnotherThread(recursive));
}

} // namespace
