#pragma once
// A high-resolution timestamp for timing a piece of work in logs and traces:
// the processor's monotonic clock, never adjusted, so a difference is always
// a true duration.
#include <chrono>

namespace Qv {

class HwCounter {
public:
    // Started now.
    HwCounter() : _start(Clock::now()) {}

    void restart() { _start = Clock::now(); }
    // Seconds since the start.
    double getElapsedSeconds() const { return std::chrono::duration<double>(Clock::now() - _start).count(); }

private:
    using Clock = std::chrono::steady_clock;
    Clock::time_point _start;
};

} // namespace Qv
