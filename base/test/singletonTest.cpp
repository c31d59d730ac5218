#include "assertions.h"
#include "inSingleton.h"

#include <atomic>
#include <future>
#include <gtest/gtest.h>
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
void runScenario(std::vector<Step> const& steps) {
    using S = Registry<N>;
    int const destroyedAtStart = gDestroyed;
    for (std::size_t i = 0; i < steps.size(); ++i) {
        SCOPED_TRACE("scenario " + std::to_string(N) + " step " + std::to_string(i));
        Outcome outcome = Outcome::Ok;
        try {
            if (steps[i].op == Op::Init)
                S::initialize(std::make_unique<S>());
            else if (steps[i].op == Op::Get)
                EXPECT_EQ(S::getInstance().value, N);
            else
                S::finalize();
        } catch (InSingletonEx::ExAlreadyInitialized const& ex) {
            EXPECT_NE(ex.getReason().find("Registry<" + std::to_string(N) + ">"), std::string::npos)
                << ex.getReason();
            outcome = Outcome::AlreadyInitialized;
        } catch (InSingletonEx::ExAlreadyDestroyed const&) {
            outcome = Outcome::AlreadyDestroyed;
        } catch (InSingletonEx::ExNotInitialized const&) {
            outcome = Outcome::NotInitialized;
        }
        EXPECT_EQ(outcome, steps[i].outcome);
        EXPECT_EQ(S::getState(), steps[i].stateAfter);
        EXPECT_EQ(gDestroyed - destroyedAtStart, steps[i].destroyedAfter);
    }
}

TEST(InSingletonTest, StateMachine) {
    using enum Op;
    using enum Outcome;
    // Before creation: nothing to read or finalize, and the state stays 0.
    runScenario<1>(
        {{Get, NotInitialized, 0, 0}, {Fin, NotInitialized, 0, 0}, {Init, Ok, 1, 0}, {Get, Ok, 1, 0}});
    // A second initialization deletes its object and keeps the first.
    runScenario<2>({{Init, Ok, 1, 0}, {Init, AlreadyInitialized, 1, 1}, {Get, Ok, 1, 1}, {Fin, Ok, 2, 2}});
    // Destroyed is final: no second life, no double delete.
    runScenario<3>({{Init, Ok, 1, 0},
                    {Fin, Ok, 2, 1},
                    {Get, AlreadyDestroyed, 2, 1},
                    {Fin, AlreadyDestroyed, 2, 1},
                    {Init, AlreadyDestroyed, 2, 2}});
    EXPECT_THROW(Registry<4>::initialize(nullptr), AssertionsEx::ExAssertionFailed);
    EXPECT_EQ(Registry<4>::getState(), 0);
}

TEST(InSingletonTest, ReadersRacingFinalizeGetTheInstanceOrAlreadyDestroyed) {
    using S = Registry<6>;
    S::initialize(std::make_unique<S>());
    auto reader = std::async(std::launch::async, [] {
        try {
            for (int i = 0; i < 10000000; ++i)
                (void)&S::getInstance(); // the object itself may go at any time
        } catch (InSingletonEx::ExAlreadyDestroyed const&) {
        }
    });
    S::finalize();
    EXPECT_NO_THROW(reader.get());
}

} // namespace
