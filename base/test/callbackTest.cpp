#include "cbContainer.h"
#include "cbDispatcher.h"
#include "cbHandler.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace Qv;

namespace {

struct Event {
    int id = 0;
};
using Log = std::vector<std::string>;

// A handler whose reaction is given by the test; it logs its calls.
struct Probe : CbHandler<Event const> {
    Probe(std::string name, Log& log) : name(std::move(name)), log(log) {}
    void call(Event const& event) override {
        log.push_back(name + ":" + std::to_string(event.id));
        if (onCall)
            onCall();
    }
    std::string name;
    Log& log;
    std::function<void()> onCall;
};

struct Listener {
    void fillIn(std::string& text) { text = "filled " + text; }
};

TEST(CbTest, MethodHandlerWritesIntoANonConstArgument) {
    Listener listener;
    CbMethod<Listener, std::string> filler(&listener, &Listener::fillIn);
    std::string text = "name";
    filler.call(text);
    EXPECT_EQ(text, "filled name");
    EXPECT_THROW((CbMethod<Listener, std::string>(nullptr, &Listener::fillIn)),
                 AssertionsEx::ExAssertionFailed);
}

TEST(CbTest, ChangesDuringDispatch) {
    // a, b, c are registered in that order, d is not. During the first dispatch
    // the actor runs its script: "-x" removes x, "+x" adds x, "=" dispatches
    // event 9 from inside, "!" throws.
    struct Case {
        char const* what;
        char actor;
        std::string script;
        Log expected; // two dispatches, ids 1 and 2
        std::size_t remaining;
    } const cases[] = {
        {"adds one already there", 'a', "+b", {"a:1", "b:1", "c:1", "a:2", "b:2", "c:2"}, 3},
        {"removes itself twice", 'b', "-b-b", {"a:1", "b:1", "c:1", "a:2", "c:2"}, 2},
        {"removes a later one, not called", 'a', "-c", {"a:1", "b:1", "a:2", "b:2"}, 2},
        {"removes an earlier one", 'c', "-a", {"a:1", "b:1", "c:1", "b:2", "c:2"}, 2},
        {"adds one, called next time", 'b', "+d", {"a:1", "b:1", "c:1", "a:2", "b:2", "c:2", "d:2"}, 4},
        {"removes and re-adds itself", 'a', "-a+a", {"a:1", "b:1", "c:1", "b:2", "c:2", "a:2"}, 3},
        {"removes everyone", 'a', "-a-b-c", {"a:1"}, 0},
        {"removes itself and dispatches", 'a', "-a=", {"a:1", "b:9", "c:9", "b:1", "c:1", "b:2", "c:2"}, 2},
        {"removes a later one and throws", 'b', "-c!", {"a:1", "b:1", "a:2", "b:2"}, 2},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.what);
        Log log;
        Probe probes[] = {{"a", log}, {"b", log}, {"c", log}, {"d", log}};
        CbDispatcher<Event const> dispatcher;
        for (int i = 0; i < 3; ++i)
            dispatcher.addCallback(&probes[i]);
        probes[c.actor - 'a'].onCall = [&] {
            for (std::size_t i = 0; i < c.script.size(); ++i) {
                if (c.script[i] == '=')
                    dispatcher.dispatch(Event{9});
                else if (c.script[i] == '!')
                    throw std::runtime_error("handler failed");
                else if (c.script[i++] == '-')
                    dispatcher.removeCallback(&probes[c.script[i] - 'a']);
                else
                    dispatcher.addCallback(&probes[c.script[i] - 'a']);
            }
        };
        try {
            dispatcher.dispatch(Event{1});
        } catch (std::runtime_error const&) { // thrown by "!"
        }
        probes[c.actor - 'a'].onCall = nullptr;
        dispatcher.dispatch(Event{2});
        EXPECT_EQ(log, c.expected);
        EXPECT_EQ(dispatcher.getNbCallbacks(), c.remaining);
    }
    CbDispatcher<Event const> dispatcher;
    dispatcher.removeCallback(nullptr);
    EXPECT_THROW(dispatcher.addCallback(nullptr), AssertionsEx::ExAssertionFailed);
}

TEST(CbTest, ContainerUnregistersItsHandlersEvenWhenReleasedByOneDuringDispatch) {
    Log log;
    CbDispatcher<Event const> dispatcher;
    Probe later("later", log);
    auto container = std::make_unique<CbContainer>();
    Probe* first = container->add(dispatcher, std::make_unique<Probe>("first", log));
    Probe* second = container->add(dispatcher, std::make_unique<Probe>("second", log));
    dispatcher.addCallback(&later);
    // The first handler ends the scope that owns both, as a closing controller would.
    first->onCall = [&] { dispatcher.removeCallback(second), container->clear(); };
    dispatcher.dispatch(Event{1});
    dispatcher.dispatch(Event{2}); // would reach a deleted handler if it were still registered
    EXPECT_EQ(log, (Log{"first:1", "later:1", "later:2"}));
}

} // namespace
