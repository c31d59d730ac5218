#pragma once
// An integer shared between threads: reference counts and completion counts.
// Every operation is atomic and returns what the caller needs to decide on,
// so that no separate read is ever required (it could be stale).
#include <atomic>
#include <type_traits>

namespace Qv {

template <class T>
class LkCounter {
    static_assert(std::is_integral_v<T>, "LkCounter holds an integer");

public:
    constexpr explicit LkCounter(T initial = 0) noexcept : _value(initial) {}
    LkCounter(LkCounter const&) = delete;
    LkCounter& operator=(LkCounter const&) = delete;

    // Both return the value after the change.
    T increment() noexcept { return _value.fetch_add(1, std::memory_order_acq_rel) + 1; }
    T decrement() noexcept { return _value.fetch_sub(1, std::memory_order_acq_rel) - 1; }

    T get() const noexcept { return _value.load(std::memory_order_acquire); }
    void set(T value) noexcept { _value.store(value, std::memory_order_release); }

    // Stores `desired` if the value is `expected`. On failure `expected`
    // receives the current value, ready for the next round of a loop.
    bool compareAndSwap(T& expected, T desired) noexcept {
        return _value.compare_exchange_strong(expected, desired, std::memory_order_acq_rel,
                                              std::memory_order_acquire);
    }

private:
    std::atomic<T> _value;
};

} // namespace Qv
