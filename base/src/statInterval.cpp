#include "statInterval.h"

#include "assertions.h"

#include <atomic>

namespace Qv {

namespace {
struct Totals {
    std::atomic<long long> nanoseconds{0};
    std::atomic<long long> count{0};
};
// Relaxed: totals are only read back as sums.
constinit Totals gTotals[StatTypes::NB_IDS]{};

Totals& totalsOf(StatTypes::Id id) {
    QV_ASSERT(StatTypes::isValid(id));
    return gTotals[id];
}
} // namespace

StatInterval::StatInterval(StatTypes::Id id) : _id(id), _start(std::chrono::steady_clock::now()) {
    totalsOf(id); // refuse a bad identifier now rather than in the destructor
}

StatInterval::~StatInterval() {
    stop();
}

void StatInterval::start() {
    _start = std::chrono::steady_clock::now();
    _running = true;
}

void StatInterval::stop() {
    if (!_running)
        return;
    _running = false;
    auto const elapsed = std::chrono::steady_clock::now() - _start;
    Totals& totals = gTotals[_id];
    totals.nanoseconds.fetch_add(std::chrono::duration_cast<std::chrono::nanoseconds>(elapsed).count(),
                                 std::memory_order_relaxed);
    totals.count.fetch_add(1, std::memory_order_relaxed);
}

double StatInterval::getTotalSeconds(StatTypes::Id id) {
    return static_cast<double>(totalsOf(id).nanoseconds.load(std::memory_order_relaxed)) * 1e-9;
}

long long StatInterval::getCount(StatTypes::Id id) {
    return totalsOf(id).count.load(std::memory_order_relaxed);
}

void StatInterval::reset(StatTypes::Id id) {
    Totals& totals = totalsOf(id);
    totals.nanoseconds.store(0, std::memory_order_relaxed);
    totals.count.store(0, std::memory_order_relaxed);
}

void StatInterval::resetAll() {
    for (Totals& totals : gTotals) {
        totals.nanoseconds.store(0, std::memory_order_relaxed);
        totals.count.store(0, std::memory_order_relaxed);
    }
}

} // namespace Qv
