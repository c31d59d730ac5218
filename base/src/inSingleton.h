#pragma once
// Frame of a singleton whose life the package manager drives: initialize at
// package start, finalize at package stop. Its three states let a late or
// early caller get a clear exception instead of a dangling object:
//   0 not created, 1 live, 2 destroyed (for good: no second life).
#include "exBase.h"

#include <atomic>
#include <mutex>
#include <string>
#include <typeinfo>

namespace Qv {

struct InSingletonEx {
    // Each reason names the singleton's class.
    QV_DECLARE_EX(ExAlreadyInitialized, ExBase);
    QV_DECLARE_EX(ExAlreadyDestroyed, ExBase);
    QV_DECLARE_EX(ExNotInitialized, ExBase);
};

// The type-independent state machine behind InSingleton<T>. Constant
// initialised, so it is usable during static construction of any unit.
class InSingletonCore {
public:
    enum State { NOT_CREATED = 0, LIVE = 1, DESTROYED = 2 };

    constexpr InSingletonCore() noexcept = default;
    InSingletonCore(InSingletonCore const&) = delete;
    InSingletonCore& operator=(InSingletonCore const&) = delete;

    // Moves 0 -> 1 with `instance`; throws in any other state, before the
    // caller gives up ownership.
    void install(void* instance, std::type_info const& type);
    // Moves 1 -> 2 and returns the instance for the caller to destroy.
    void* uninstall(std::type_info const& type);
    void* getInstance(std::type_info const& type) const;
    State getState() const noexcept { return _state.load(); }

private:
    [[noreturn]] static void throwForState(State state, std::type_info const& type);

    std::mutex _mutex;
    std::atomic<State> _state{NOT_CREATED};
    std::atomic<void*> _instance{nullptr};
};

template <class T>
class InSingleton {
public:
    using State = InSingletonCore::State;

    // Takes ownership. In state 1 the new object is deleted and
    // ExAlreadyInitialized is thrown; in state 2, ExAlreadyDestroyed.
    static void initialize(OPtrRet<T> instance);
    // Destroys the instance. ExNotInitialized in state 0, ExAlreadyDestroyed in 2.
    static void finalize();
    // ExNotInitialized in state 0, ExAlreadyDestroyed in state 2.
    static T& getInstance() { return *static_cast<T*>(_core.getInstance(typeid(T))); }
    static State getState() noexcept { return _core.getState(); }
    static bool isInitialized() noexcept { return getState() == InSingletonCore::LIVE; }

private:
    static constinit inline InSingletonCore _core;
};

template <class T>
void InSingleton<T>::initialize(OPtrRet<T> instance) {
    // A throw leaves `instance` the owner, so the new object is deleted.
    _core.install(instance.get(), typeid(T));
    instance.release();
}

template <class T>
void InSingleton<T>::finalize() {
    // Deleted outside the core's lock: its destructor may ask for singletons.
    delete static_cast<T*>(_core.uninstall(typeid(T)));
}

} // namespace Qv
