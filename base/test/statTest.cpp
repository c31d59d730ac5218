#include "assertions.h"
#include "statInterval.h"
#include "statScalar.h"

#include <chrono>
#include <cstring>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

using namespace Qv;

namespace {

template <class F>
void onThreads(int nbThreads, F const& work) {
    std::vector<std::thread> threads;
    for (int t = 0; t < nbThreads; ++t)
        threads.emplace_back(work);
    for (auto& thread : threads)
        thread.join();
}

TEST(StatScalarTest, CountsFromManyThreadsLoseNothingAndStayApartById) {
    struct Case {
        StatTypes::Id id;
        int threads;
        int perThread;
        long long amount;
    } const cases[] = {{StatTypes::FILE_IMPORT_SCALAR_ID, 8, 20000, 1},
                       {StatTypes::PROXY_TILE_SCALAR_ID, 4, 10000, 3},
                       {StatTypes::ERROR_TILE_SCALAR_ID, 3, 5000, -2},
                       {StatTypes::FILE_IMPORT_INTERVAL_ID, 1, 1, 1LL << 40}};
    StatScalar::resetAll();
    for (auto const& c : cases)
        onThreads(c.threads, [&] {
            for (int i = 0; i < c.perThread; ++i)
                StatScalar(c.id, c.amount);
        });
    for (auto const& c : cases)
        EXPECT_EQ(StatScalar::get(c.id), c.threads * c.perThread * c.amount) << StatTypes::getName(c.id);

    StatScalar::reset(StatTypes::PROXY_TILE_SCALAR_ID);
    EXPECT_EQ(StatScalar::get(StatTypes::PROXY_TILE_SCALAR_ID), 0);
    EXPECT_NE(StatScalar::get(StatTypes::FILE_IMPORT_SCALAR_ID), 0) << "reset touched another id";
    StatScalar::resetAll();
    for (auto const& c : cases)
        EXPECT_EQ(StatScalar::get(c.id), 0);
}

TEST(StatIntervalTest, EachIntervalIsRecordedOnceWhicheverWayItEnds) {
    StatTypes::Id const id = StatTypes::FILE_IMPORT_INTERVAL_ID;
    struct Case {
        char const* what;
        void (*run)(StatTypes::Id);
        long long recorded;
    } const cases[] = {
        {"stopped", [](StatTypes::Id i) { StatInterval(i).stop(); }, 1},
        {"stopped twice",
         [](StatTypes::Id i) {
             StatInterval s(i);
             s.stop();
             s.stop();
         },
         1},
        {"left running", [](StatTypes::Id i) { StatInterval s(i); }, 1},
        {"left by an exception",
         [](StatTypes::Id i) {
             try {
                 StatInterval s(i);
                 throw std::runtime_error("read failed");
             } catch (std::runtime_error const&) {
             }
         },
         1},
        {"restarted after a stop",
         [](StatTypes::Id i) {
             StatInterval s(i);
             s.stop();
             s.start();
             s.stop();
         },
         2},
        {"started twice",
         [](StatTypes::Id i) {
             StatInterval s(i);
             s.start();
             s.start();
         },
         1},
    };
    for (auto const& c : cases) {
        StatInterval::reset(id);
        c.run(id);
        EXPECT_EQ(StatInterval::getCount(id), c.recorded) << c.what;
        EXPECT_GE(StatInterval::getTotalSeconds(id), 0.0) << c.what;
    }
}

TEST(StatIntervalTest, TotalsFromManyThreadsSumEveryInterval) {
    StatTypes::Id const id = StatTypes::FILE_IMPORT_INTERVAL_ID;
    StatInterval::resetAll();
    onThreads(6, [&] {
        for (int i = 0; i < 5000; ++i)
            StatInterval(id).stop();
    });
    EXPECT_EQ(StatInterval::getCount(id), 30000);
    EXPECT_EQ(StatInterval::getCount(StatTypes::FILE_IMPORT_SCALAR_ID), 0);

    // One interval that certainly lasted a millisecond adds at least that.
    double const before = StatInterval::getTotalSeconds(id);
    {
        StatInterval interval(id);
        auto const begin = std::chrono::steady_clock::now();
        while (std::chrono::steady_clock::now() - begin < std::chrono::milliseconds(1))
            ;
    }
    EXPECT_GE(StatInterval::getTotalSeconds(id) - before, 0.001);
    StatInterval::reset(id);
    EXPECT_EQ(StatInterval::getTotalSeconds(id), 0.0);
}

TEST(StatTypesTest, NamesAreDistinctAndABadIdIsRefused) {
    for (int i = 0; i < StatTypes::NB_IDS; ++i)
        for (int j = 0; j < i; ++j)
            EXPECT_STRNE(StatTypes::getName(StatTypes::Id(i)), StatTypes::getName(StatTypes::Id(j)));
    StatTypes::Id const bad[] = {StatTypes::NB_IDS, StatTypes::Id(-1)};
    for (StatTypes::Id id : bad) {
        EXPECT_STREQ(StatTypes::getName(id), "?");
        try {
            StatScalar scalar(id);
            ADD_FAILURE() << "id " << int(id) << " accepted";
        } catch (AssertionsEx::ExAssertionFailed const& error) {
            EXPECT_EQ(error.getReason(), "StatTypes::isValid(id)");
        }
        EXPECT_THROW(StatInterval interval(id), AssertionsEx::ExAssertionFailed);
        EXPECT_THROW(StatInterval::getCount(id), AssertionsEx::ExAssertionFailed);
    }
}

} // namespace
