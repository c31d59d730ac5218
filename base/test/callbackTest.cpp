#include "cbContainer.h"
#include "cbDispatcher.h"
#include "cbHandler.h"
#include "rcStrongPtr.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace Qv;

namespace {

struct Event {
    int id = 0;
};

// A handler whose reaction is given by the test; it logs its calls.
class Probe : public CbHandler<Event const> {
public:
    Probe(std::string name, std::vector<std::string>& log) : _name(std::move(name)), _log(log) {}
    void call(Event const& event) override {
        _log.push_back(_name + ":" + std::to_string(event.id));
        if (onCall)
            onCall();
    }
    std::function<void()> onCall;

private:
    std::string _name;
    std::vector<std::string>& _log;
};

class Listener {
public:
    void onEvent(Event const& event) { received.push_back(event.id); }
    void fillIn(std::string& text) { text = "filled " + text; }
    std::vector<int> received;
};

} // namespace

TEST(CbTest, MethodHandlerCallsItsMember) {
    Listener listener;
    CbMethod<Listener, Event const> handler(&listener, &Listener::onEvent);
    handler.call(Event{4});
    EXPECT_EQ(listener.received, std::vector<int>{4});

    // A non-const argument lets the handler write its answer into it.
    CbMethod<Listener, std::string> filler(&listener, &Listener::fillIn);
    std::string text = "name";
    filler.call(text);
    EXPECT_EQ(text, "filled name");

    EXPECT_THROW((CbMethod<Listener, std::string>(nullptr, &Listener::fillIn)),
                 AssertionsEx::ExAssertionFailed);
}

TEST(CbTest, DispatcherCallsEachHandlerOnceInOrder) {
    std::vector<std::string> log;
    Probe a("a", log), b("b", log);
    CbDispatcher<Event const> dispatcher;
    EXPECT_TRUE(dispatcher.isEmpty());
    dispatcher.addCallback(&a);
    dispatcher.addCallback(&b);
    dispatcher.addCallback(&a); // already there
    EXPECT_EQ(dispatcher.getNbCallbacks(), 2u);
    dispatcher.dispatch(Event{1});
    dispatcher.removeCallback(&a);
    dispatcher.removeCallback(&a); // no longer there
    dispatcher.removeCallback(nullptr);
    dispatcher.dispatch(Event{2});
    EXPECT_EQ(log, (std::vector<std::string>{"a:1", "b:1", "b:2"}));
    EXPECT_FALSE(dispatcher.hasCallback(&a));
    EXPECT_THROW(dispatcher.addCallback(nullptr), AssertionsEx::ExAssertionFailed);
}

TEST(CbTest, ChangesDuringDispatch) {
    struct Case {
        char const* what;
        // Wires the reaction of a, b, c (registered in that order) and d (not registered).
        std::function<void(CbDispatcher<Event const>&, Probe& a, Probe& b, Probe& c, Probe& d)> wire;
        std::vector<std::string> expected; // two dispatches, ids 1 and 2
        std::size_t remaining;
    };
    std::vector<Case> const cases = {
        {"a handler removes itself",
         [](auto& disp, auto&, auto& b, auto&, auto&) { b.onCall = [&] { disp.removeCallback(&b); }; },
         {"a:1", "b:1", "c:1", "a:2", "c:2"},
         2},
        {"a handler removes a later one, which is not called",
         [](auto& disp, auto& a, auto&, auto& c, auto&) { a.onCall = [&] { disp.removeCallback(&c); }; },
         {"a:1", "b:1", "a:2", "b:2"},
         2},
        {"a handler removes an earlier one",
         [](auto& disp, auto& a, auto&, auto& c, auto&) { c.onCall = [&] { disp.removeCallback(&a); }; },
         {"a:1", "b:1", "c:1", "b:2", "c:2"},
         2},
        {"a handler adds one, which waits for the next dispatch",
         [](auto& disp, auto&, auto& b, auto&, auto& d) { b.onCall = [&] { disp.addCallback(&d); }; },
         {"a:1", "b:1", "c:1", "a:2", "b:2", "c:2", "d:2"},
         4},
        {"a handler removes and re-adds itself",
         [](auto& disp, auto& a, auto&, auto&, auto&) {
             a.onCall = [&] {
                 disp.removeCallback(&a);
                 disp.addCallback(&a);
             };
         },
         {"a:1", "b:1", "c:1", "b:2", "c:2", "a:2"},
         3},
        {"a handler removes everyone",
         [](auto& disp, auto& a, auto& b, auto& c, auto&) {
             a.onCall = [&] {
                 disp.removeCallback(&a);
                 disp.removeCallback(&b);
                 disp.removeCallback(&c);
             };
         },
         {"a:1"},
         0},
    };
    for (auto const& c : cases) {
        std::vector<std::string> log;
        Probe a("a", log), b("b", log), cc("c", log), d("d", log);
        CbDispatcher<Event const> dispatcher;
        dispatcher.addCallback(&a);
        dispatcher.addCallback(&b);
        dispatcher.addCallback(&cc);
        c.wire(dispatcher, a, b, cc, d);
        dispatcher.dispatch(Event{1});
        a.onCall = b.onCall = cc.onCall = nullptr;
        dispatcher.dispatch(Event{2});
        EXPECT_EQ(log, c.expected) << c.what;
        EXPECT_EQ(dispatcher.getNbCallbacks(), c.remaining) << c.what;
    }
}

TEST(CbTest, NestedDispatchAndThrowingHandlerLeaveTheListConsistent) {
    std::vector<std::string> log;
    Probe a("a", log), b("b", log);
    CbDispatcher<Event const> dispatcher;
    dispatcher.addCallback(&a);
    dispatcher.addCallback(&b);
    int depth = 0;
    a.onCall = [&] {
        if (depth++ == 0) {
            dispatcher.removeCallback(&a);
            dispatcher.dispatch(Event{9}); // a is gone already: only b
        }
    };
    dispatcher.dispatch(Event{1});
    EXPECT_EQ(log, (std::vector<std::string>{"a:1", "b:9", "b:1"}));
    EXPECT_EQ(dispatcher.getNbCallbacks(), 1u);

    log.clear();
    dispatcher.addCallback(&a);
    b.onCall = [&] {
        dispatcher.removeCallback(&a);
        throw std::runtime_error("handler failed");
    };
    EXPECT_THROW(dispatcher.dispatch(Event{2}), std::runtime_error);
    b.onCall = nullptr;
    dispatcher.dispatch(Event{3});
    EXPECT_EQ(log, (std::vector<std::string>{"b:2", "b:3"}));
}

TEST(CbTest, EmptyTypeDispatchesWithoutArgument) {
    class Counter : public CbHandler<CbEmptyType> {
    public:
        void call(CbEmptyType&) override { ++calls; }
        int calls = 0;
    } counter;
    CbDispatcher<CbEmptyType> dispatcher;
    dispatcher.addCallback(&counter);
    dispatcher.dispatch();
    dispatcher.dispatch();
    EXPECT_EQ(counter.calls, 2);
}

TEST(CbTest, ContainerUnregistersAndDeletesItsHandlers) {
    std::vector<std::string> log;
    CbDispatcher<Event const> dispatcher;
    CbDispatcher<Event const> other;
    Listener listener;
    {
        CbContainer container;
        Probe* owned = container.add(dispatcher, std::make_unique<Probe>("owned", log));
        container.add(other,
                      std::make_unique<CbMethod<Listener, Event const>>(&listener, &Listener::onEvent));
        auto* loose =
            container.add(std::make_unique<CbMethod<Listener, std::string>>(&listener, &Listener::fillIn));
        EXPECT_TRUE(dispatcher.hasCallback(owned));
        EXPECT_EQ(other.getNbCallbacks(), 1u);
        std::string text = "x";
        loose->call(text);
        EXPECT_EQ(text, "filled x");
        dispatcher.dispatch(Event{1});
        other.dispatch(Event{1});
    }
    EXPECT_TRUE(dispatcher.isEmpty());
    EXPECT_TRUE(other.isEmpty());
    dispatcher.dispatch(Event{2}); // would reach a deleted handler if it were still registered
    EXPECT_EQ(log, std::vector<std::string>{"owned:1"});
    EXPECT_EQ(listener.received, std::vector<int>{1});
}

TEST(CbTest, ContainerReleasedByItsOwnHandlerDuringDispatch) {
    std::vector<std::string> log;
    CbDispatcher<Event const> dispatcher;
    Probe later("later", log);
    auto container = std::make_unique<CbContainer>();
    Probe* first = container->add(dispatcher, std::make_unique<Probe>("first", log));
    Probe* second = container->add(dispatcher, std::make_unique<Probe>("second", log));
    dispatcher.addCallback(&later);
    // The first handler ends the scope that owns both, as a closing controller would.
    first->onCall = [&] { dispatcher.removeCallback(second), container->clear(); };
    dispatcher.dispatch(Event{1});
    EXPECT_EQ(log, (std::vector<std::string>{"first:1", "later:1"}));
    EXPECT_EQ(dispatcher.getNbCallbacks(), 1u);
    EXPECT_TRUE(container->isEmpty());
}

TEST(CbTest, HandlersAreHeldByStrongAndWeakPointers) {
    std::vector<std::string> log;
    RCStrongPtr<CbHandler<Event const>> handler(std::make_unique<Probe>("held", log));
    RCWeakPtr<CbHandler<Event const>> weak = handler;
    if (RCWeakAccessor<CbHandler<Event const>> access(weak); !access.isNull())
        access->call(Event{1});
    handler.reset();
    EXPECT_TRUE(RCWeakAccessor<CbHandler<Event const>>(weak).isNull());
    EXPECT_EQ(log, std::vector<std::string>{"held:1"});
}
