#pragma once
// Timing for the benchmarks: contenders run in turns, after one warm-up each,
// so that all of them see the same moments of a noisy machine; each gets the
// median of its times.
#include <algorithm>
#include <chrono>
#include <functional>
#include <vector>

namespace QvBench {

inline double seconds(std::function<void()> const& run) {
    auto const start = std::chrono::steady_clock::now();
    run();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

inline double medianOf(std::vector<double> times) {
    std::nth_element(times.begin(), times.begin() + times.size() / 2, times.end());
    return times[times.size() / 2];
}

// Median seconds of each contender, in the order given.
inline std::vector<double> mediansInTurns(std::vector<std::function<void()>> const& contenders,
                                          int repetitions) {
    for (auto const& run : contenders)
        run();
    std::vector<std::vector<double>> times(contenders.size());
    for (int i = 0; i < repetitions; ++i)
        for (std::size_t c = 0; c < contenders.size(); ++c)
            times[c].push_back(seconds(contenders[c]));
    std::vector<double> medians;
    for (auto const& t : times)
        medians.push_back(medianOf(t));
    return medians;
}

// Keeps a computed value from being optimised away.
template <class T>
void keep(T const& value) {
    asm volatile("" : : "r,m"(value) : "memory");
}

} // namespace QvBench
