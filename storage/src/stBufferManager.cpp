#include "stBufferManager.h"

#include "assertions.h"
#include "lgLog.h"
#include "mbBuffer.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <fmt/format.h>
#include <unistd.h>

namespace Qv {

namespace {
constexpr std::size_t MIB = std::size_t(1) << 20;
constexpr std::size_t MIN_DEFAULT_BUDGET = 256 * MIB;
} // namespace

StBufferManager& StBufferManager::getInstance() {
    // Never deleted: tiles may give their buffers back during the exit of the process.
    static StBufferManager* const instance = new StBufferManager;
    return *instance;
}

namespace {
// Freed tile memory kept for reuse sits outside the budget's count: a small
// budget keeps little of it.
void boundRecycling(std::size_t budget) {
    MbBuffer::setRecycleLimit(std::min(MbBuffer::DEFAULT_RECYCLE_LIMIT, budget / 4));
}
} // namespace

StBufferManager::StBufferManager() : _budget(readBudgetFromEnvironment()) {
    boundRecycling(_budget);
}

std::size_t StBufferManager::computeDefaultBudget() {
    long const pages = sysconf(_SC_PHYS_PAGES);
    long const pageSize = sysconf(_SC_PAGE_SIZE);
    std::size_t physical = 0;
    if (pages > 0 && pageSize > 0)
        physical = std::size_t(pages) * std::size_t(pageSize);
    return std::max(physical / 4, MIN_DEFAULT_BUDGET);
}

std::size_t StBufferManager::readBudgetFromEnvironment() {
    char const* text = std::getenv("QV_IMAGE_MEMORY_MB");
    if (!text || !*text)
        return computeDefaultBudget();
    char* end = nullptr;
    errno = 0;
    unsigned long long const mib = std::strtoull(text, &end, 10);
    // Digits only: strtoull would skip blanks and read "-1" as a huge number.
    if (*end != '\0' || errno != 0 || mib < 1 || mib > (SIZE_MAX >> 20) ||
        !std::isdigit(static_cast<unsigned char>(text[0]))) {
        std::size_t const fallback = computeDefaultBudget();
        LgLog::outputEntry(LgLog::WARNING,
                           fmt::format("QV_IMAGE_MEMORY_MB must be a whole number of MiB from 1, not \"{}\"; "
                                       "the image memory budget is {} MiB",
                                       text, fallback / MIB));
        return fallback;
    }
    return std::size_t(mib) * MIB;
}

std::size_t StBufferManager::getBudget() const {
    std::lock_guard lock(_mutex);
    return _budget;
}

void StBufferManager::setBudget(std::size_t bytes) {
    {
        std::lock_guard lock(_mutex);
        _budget = bytes;
    }
    boundRecycling(bytes);
}

std::size_t StBufferManager::getUsed() const {
    std::lock_guard lock(_mutex);
    return _used;
}

std::size_t StBufferManager::getUsedEvictable() const {
    std::lock_guard lock(_mutex);
    return _usedEvictable;
}

std::size_t StBufferManager::getPeak() const {
    std::lock_guard lock(_mutex);
    return _peak;
}

void StBufferManager::resetPeak() {
    std::lock_guard lock(_mutex);
    _peak = _used;
}

void StBufferManager::addEvictable(Evictable* evictable) {
    QV_ASSERT(evictable != nullptr);
    std::unique_lock lock(_evictablesLock);
    if (std::find(_evictables.begin(), _evictables.end(), evictable) == _evictables.end())
        _evictables.push_back(evictable);
}

void StBufferManager::removeEvictable(Evictable* evictable) {
    std::unique_lock lock(_evictablesLock);
    _evictables.erase(std::remove(_evictables.begin(), _evictables.end(), evictable), _evictables.end());
}

bool StBufferManager::tryAdd(std::size_t bytes, bool evictable) {
    if (bytes > _budget || _used > _budget - bytes)
        return false;
    _used += bytes;
    if (evictable)
        _usedEvictable += bytes;
    _peak = std::max(_peak, _used);
    return true;
}

bool StBufferManager::reserve(std::size_t bytes, bool evictable) {
    for (;;) {
        std::size_t needed = 0;
        {
            std::lock_guard lock(_mutex);
            if (tryAdd(bytes, evictable))
                return true;
            if (bytes > _budget)
                return false; // no eviction can help
            needed = _used - (_budget - bytes);
        }
        // The caches give back memory without the manager's lock: their
        // entries' buffers come back through release().
        std::size_t freed = 0;
        {
            std::shared_lock lock(_evictablesLock);
            for (Evictable* evictable : _evictables) {
                if (freed >= needed)
                    break;
                freed += evictable->evict(needed - freed);
            }
        }
        if (freed == 0) {
            // Nothing more to give; another thread may have released meanwhile.
            std::lock_guard lock(_mutex);
            return tryAdd(bytes, evictable);
        }
    }
}

void StBufferManager::release(std::size_t bytes, bool evictable) {
    std::lock_guard lock(_mutex);
    QV_ASSERT(bytes <= _used);
    _used -= bytes;
    if (evictable) {
        QV_ASSERT(bytes <= _usedEvictable);
        _usedEvictable -= bytes;
    }
}

} // namespace Qv
