#include "assertions.h"
#include "obObserver.h"
#include "obSubject.h"

#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <stdexcept>
#include <thread>
#include <vector>

using namespace Qv;

namespace {

class Recorder : public ObObserver {
public:
    void update(ObSubject& subject) override {
        ++calls;
        last = &subject;
        if (action)
            action(subject);
    }
    std::atomic<int> calls{0};
    ObSubject* last = nullptr;
    std::function<void(ObSubject&)> action;
};

TEST(ObSubjectTest, AttachedObserversAreToldOnceEachAndDetachedOnesNotAtAll) {
    ObSubject subject;
    Recorder first, second, detached;
    subject.attach(first);
    subject.attach(&second);
    subject.attach(first); // twice: still told once
    subject.attach(detached);
    EXPECT_TRUE(subject.detach(detached));
    EXPECT_FALSE(subject.detach(detached));
    EXPECT_EQ(subject.getNbObservers(), 2);
    subject.notify();
    subject.notify();
    EXPECT_EQ(first.calls, 2);
    EXPECT_EQ(second.calls, 2);
    EXPECT_EQ(first.last, &subject);
    EXPECT_EQ(detached.calls, 0);
    try {
        subject.attach(nullptr);
        ADD_FAILURE() << "a null observer was attached";
    } catch (AssertionsEx::ExAssertionFailed const& error) {
        EXPECT_EQ(error.getReason(), "observer != nullptr");
    }
}

TEST(ObSubjectTest, AnUpdateMayDetachAndAThrowingObserverDoesNotSilenceTheOthers) {
    struct Case {
        char const* what;
        std::function<void(ObSubject&, Recorder&, Recorder&)> firstAction;
        int secondCalls; // of the observer attached after the acting one
        bool throws;
    };
    std::vector<Case> const cases = {
        {"detaches itself", [](ObSubject& s, Recorder& self, Recorder&) { s.detach(self); }, 1, false},
        {"detaches the next", [](ObSubject& s, Recorder&, Recorder& next) { s.detach(next); }, 0, false},
        {"throws", [](ObSubject&, Recorder&, Recorder&) { throw std::runtime_error("observer failed"); }, 1,
         true},
    };
    for (auto const& c : cases) {
        ObSubject subject;
        Recorder acting, next;
        acting.action = [&](ObSubject& s) { c.firstAction(s, acting, next); };
        subject.attach(acting);
        subject.attach(next);
        if (c.throws)
            EXPECT_THROW(subject.notify(), std::runtime_error) << c.what;
        else
            EXPECT_NO_THROW(subject.notify()) << c.what;
        EXPECT_EQ(acting.calls, 1) << c.what;
        EXPECT_EQ(next.calls, c.secondCalls) << c.what;
    }
}

TEST(ObSubjectTest, AfterDetachReturnsNoOtherThreadIsInsideTheObserver) {
    ObSubject subject;
    std::atomic<bool> stop{false};
    std::vector<std::thread> notifiers;
    for (int t = 0; t < 2; ++t)
        notifiers.emplace_back([&] {
            while (!stop)
                subject.notify();
        });
    for (int round = 0; round < 100; ++round) {
        // An observer whose update is still running when it is marked dead
        // would be used after its end.
        struct Guarded : ObObserver {
            std::atomic<bool> alive{true};
            std::atomic<bool> usedDead{false};
            void update(ObSubject&) override {
                if (!alive)
                    usedDead = true;
                std::this_thread::yield();
                if (!alive)
                    usedDead = true;
            }
        } observer;
        subject.attach(observer);
        std::this_thread::yield();
        subject.detach(observer);
        observer.alive = false;
        std::this_thread::yield();
        ASSERT_FALSE(observer.usedDead) << "round " << round;
    }
    stop = true;
    for (auto& thread : notifiers)
        thread.join();
    EXPECT_EQ(subject.getNbObservers(), 0);
}

} // namespace
