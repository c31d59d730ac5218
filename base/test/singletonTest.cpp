#include "assertions.h"
#include "inSingleton.h"

#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

using namespace Qv;

namespace {

std::atomic<int> gDestroyed{0};

// One distinct singleton per scenario, since each state machine runs once.
template <int N>
class Registry : public InSingleton<Registry<N>> {
public:
    ~Registry() { ++gDestroyed; }
    int value = N;
};

enum class Op { Init, Get, Fin };
enum class Outcome { Ok, AlreadyInitialized, AlreadyDestroyed, NotInitialized };

struct Step {
    Op op;
    Outcome outcome;
    int stateAfter;
    int destroyedAfter; // objects destroyed since the scenario began
};

template <int N>
Outcome run(Op op) {
    using S = Registry<N>;
    try {
        switch (op) {
        case Op::Init:
            S::initialize(std::make_unique<S>());
            break;
        case Op::Get:
            EXPECT_EQ(S::getInstance().value, N);
            break;
        case Op::Fin:
            S::finalize();
            break;
        }
        return Outcome::Ok;
    } catch (InSingletonEx::ExAlreadyInitialized const& ex) {
        EXPECT_NE(ex.getReason().find("Registry<" + std::to_string(N) + ">"), std::string::npos)
            << ex.getReason();
        return Outcome::AlreadyInitialized;
    } catch (InSingletonEx::ExAlreadyDestroyed const&) {
        return Outcome::AlreadyDestroyed;
    } catch (InSingletonEx::ExNotInitialized const&) {
        return Outcome::NotInitialized;
    }
}

template <int N>
void runScenario(std::vector<Step> const& steps) {
    int const destroyedAtStart = gDestroyed;
    EXPECT_EQ(Registry<N>::getState(), 0);
    for (std::size_t i = 0; i < steps.size(); ++i) {
        Step const& step = steps[i];
        EXPECT_EQ(run<N>(step.op), step.outcome) << "scenario " << N << " step " << i;
        EXPECT_EQ(Registry<N>::getState(), step.stateAfter) << "scenario " << N << " step " << i;
        EXPECT_EQ(gDestroyed - destroyedAtStart, step.destroyedAfter) << "scenario " << N << " step " << i;
    }
}

} // namespace

TEST(InSingletonTest, StateMachine) {
    using enum Op;
    using enum Outcome;
    // Before creation: nothing to read or finalize, and the state stays 0.
    runScenario<1>({
        {Get, NotInitialized, 0, 0},
        {Fin, NotInitialized, 0, 0},
        {Init, Ok, 1, 0},
        {Get, Ok, 1, 0},
    });
    // A second initialization deletes its object and keeps the first.
    runScenario<2>({
        {Init, Ok, 1, 0},
        {Init, AlreadyInitialized, 1, 1},
        {Get, Ok, 1, 1},
        {Fin, Ok, 2, 2},
    });
    // Destroyed is final: no second life, no double delete.
    runScenario<3>({
        {Init, Ok, 1, 0},
        {Fin, Ok, 2, 1},
        {Get, AlreadyDestroyed, 2, 1},
        {Fin, AlreadyDestroyed, 2, 1},
        {Init, AlreadyDestroyed, 2, 2},
    });
}

TEST(InSingletonTest, NullInstanceIsRefused) {
    EXPECT_THROW(Registry<4>::initialize(nullptr), AssertionsEx::ExAssertionFailed);
    EXPECT_EQ(Registry<4>::getState(), 0);
}

TEST(InSingletonTest, ConcurrentReadersSeeOneInstance) {
    using S = Registry<5>;
    S::initialize(std::make_unique<S>());
    S* const expected = &S::getInstance();
    std::atomic<int> mismatches{0};
    std::vector<std::thread> readers;
    for (int t = 0; t < 4; ++t) {
        readers.emplace_back([&] {
            for (int i = 0; i < 10000; ++i) {
                if (&S::getInstance() != expected || !S::isInitialized())
                    ++mismatches;
            }
        });
    }
    for (auto& t : readers)
        t.join();
    EXPECT_EQ(mismatches, 0);
    S::finalize();
}

TEST(InSingletonTest, ReadersRacingFinalizeGetTheInstanceOrAlreadyDestroyed) {
    using S = Registry<6>;
    S::initialize(std::make_unique<S>());
    std::atomic<bool> stop{false};
    std::atomic<int> wrongException{0};
    std::thread reader([&] {
        while (!stop) {
            try {
                (void)S::getState();
                (void)&S::getInstance();
            } catch (InSingletonEx::ExAlreadyDestroyed const&) {
                return;
            } catch (...) {
                ++wrongException;
                return;
            }
        }
    });
    S::finalize();
    stop = true;
    reader.join();
    EXPECT_EQ(wrongException, 0);
}
