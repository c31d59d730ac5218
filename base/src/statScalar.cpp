#include "statScalar.h"

#include "assertions.h"

#include <atomic>

namespace Qv {

namespace {
// Relaxed: a count orders nothing else, it is only read back as a total.
constinit std::atomic<long long> gCounts[StatTypes::NB_IDS]{};

std::atomic<long long>& countOf(StatTypes::Id id) {
    QV_ASSERT(StatTypes::isValid(id));
    return gCounts[id];
}
} // namespace

StatScalar::StatScalar(StatTypes::Id id, long long amount) {
    countOf(id).fetch_add(amount, std::memory_order_relaxed);
}

long long StatScalar::get(StatTypes::Id id) {
    return countOf(id).load(std::memory_order_relaxed);
}

void StatScalar::reset(StatTypes::Id id) {
    countOf(id).store(0, std::memory_order_relaxed);
}

void StatScalar::resetAll() {
    for (auto& count : gCounts)
        count.store(0, std::memory_order_relaxed);
}

} // namespace Qv
