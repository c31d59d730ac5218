// Events handed from workers to the application thread.
#include "evEventManager.h"
#include "evRequestEvent.h"
#include "pxTestUtil.h"

#include <gtest/gtest.h>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

using namespace Qv;

namespace {

class EvEventManagerTest : public ::testing::Test {
protected:
    void SetUp() override { EvEventManager::getInstance().clear(); }
    void TearDown() override { EvEventManager::getInstance().clear(); }

    // Posts an event that records (poster, sequence) when it runs; `ran` is
    // only touched by processEvents, on this thread.
    void postRecording(int poster, int sequence) {
        EvEventManager::getInstance().postEvent(
            std::make_unique<EvRequestEvent>([this, poster, sequence, thread = _self] {
                EXPECT_EQ(std::this_thread::get_id(), thread) << "run off the application thread";
                ran.emplace_back(poster, sequence);
            }));
    }

    std::thread::id const _self = std::this_thread::get_id();
    std::vector<std::pair<int, int>> ran;
};

TEST_F(EvEventManagerTest, EventsPostedFromWorkersRunInPostOrderOnlyWhenProcessed) {
    EvEventManager& manager = EvEventManager::getInstance();
    struct Case {
        char const* what;
        int threads;
        int perThread;
        bool asRequests; // posted from inside requests of the request manager
    } const cases[] = {
        {"plain threads", 4, 500, false}, {"requests", 3, 200, true}, {"nothing posted", 0, 0, false}};
    for (auto const& c : cases) {
        ran.clear();
        std::vector<std::thread> threads;
        for (int t = 0; t < c.threads; ++t)
            threads.emplace_back([&, t] {
                auto post = [&] {
                    for (int i = 0; i < c.perThread; ++i)
                        postRecording(t, i);
                };
                if (c.asRequests)
                    PxTest::runAsRequest(post);
                else
                    post();
            });
        for (auto& thread : threads)
            thread.join();
        EXPECT_TRUE(ran.empty()) << c.what << ": an event ran before processEvents";
        EXPECT_EQ(manager.getNbPendingEvents(), c.threads * c.perThread) << c.what;

        EXPECT_EQ(manager.processEvents(), c.threads * c.perThread) << c.what;
        ASSERT_EQ(ran.size(), std::size_t(c.threads * c.perThread)) << c.what;
        std::vector<int> next(c.threads, 0);
        for (auto const& [poster, sequence] : ran)
            EXPECT_EQ(sequence, next[poster]++) << c.what << ": poster " << poster << " out of order";
        EXPECT_EQ(manager.processEvents(), 0) << c.what << ": an event ran twice";
    }
}

TEST_F(EvEventManagerTest, EventsPostedWhileProcessingWaitAndAFailureKeepsTheRestQueued) {
    EvEventManager& manager = EvEventManager::getInstance();
    // An event that posts another: the new one runs at the next call.
    manager.postEvent(std::make_unique<EvRequestEvent>([this] {
        ran.emplace_back(0, 0);
        postRecording(0, 2);
    }));
    postRecording(0, 1);
    EXPECT_EQ(manager.processEvents(), 2);
    EXPECT_EQ(ran, (std::vector<std::pair<int, int>>{{0, 0}, {0, 1}}));
    EXPECT_EQ(manager.processEvents(), 1);
    EXPECT_EQ(ran.back(), std::make_pair(0, 2));

    // A failing event: those after it run at the next call, before newer ones.
    ran.clear();
    postRecording(1, 0);
    manager.postEvent(std::make_unique<EvRequestEvent>([] { throw std::runtime_error("controller gone"); }));
    postRecording(1, 1);
    EXPECT_THROW(manager.processEvents(), std::runtime_error);
    postRecording(1, 2);
    EXPECT_EQ(manager.processEvents(), 2);
    EXPECT_EQ(ran, (std::vector<std::pair<int, int>>{{1, 0}, {1, 1}, {1, 2}}));

    // Dropped events never run.
    postRecording(2, 0);
    manager.clear();
    EXPECT_EQ(manager.processEvents(), 0);
    EXPECT_EQ(ran.size(), 3u);
}

TEST_F(EvEventManagerTest, MisuseIsRefusedWithTheRuleBroken) {
    EvEventManager& manager = EvEventManager::getInstance();
    postRecording(0, 0);
    EXPECT_EQ(PxTest::assertionTextOnWorker([&] { manager.processEvents(); }),
              "!PxRequestMgr::getInstance().isWorkerThreadCurrent()");
    EXPECT_TRUE(ran.empty()) << "run on a worker";
    EXPECT_EQ(manager.getNbPendingEvents(), 1);

    struct Case {
        char const* text;
        std::function<void()> misuse;
    } const cases[] = {{"event != nullptr", [&] { manager.postEvent(nullptr); }},
                       {"fn != nullptr", [] { EvRequestEvent event{std::function<void()>()}; }}};
    for (auto const& c : cases) {
        try {
            c.misuse();
            ADD_FAILURE() << c.text << " not asserted";
        } catch (AssertionsEx::ExAssertionFailed const& error) {
            EXPECT_EQ(error.getReason(), c.text);
        }
    }
    EXPECT_EQ(manager.processEvents(), 1);
}

} // namespace
