#pragma once
// The image memory budget of the process. Two kinds of memory count against
// it: the live buffers of StBsBufferFactory, and the bytes that memory caches
// hold of tiles that came from elsewhere. Before anything is added, reserve()
// makes room by asking the caches (Evictable) to let go of their least
// recently used entries; what cannot fit even then is refused, so that the
// used bytes never rise above the budget.
//
// The budget comes from QV_IMAGE_MEMORY_MB (MiB, a whole number from 1) at
// first use; unset, it is a quarter of the physical memory, at least 256 MiB.
// A value that does not read as such is reported on the log and the default
// is used.
#include <atomic>
#include <cstddef>
#include <mutex>
#include <shared_mutex>
#include <vector>

namespace Qv {

class StBufferManager {
public:
    static StBufferManager& getInstance();

    // Something that holds memory it can give back (the memory tier).
    class Evictable {
    public:
        // Frees at least `bytes` if it can, least recently used first, and
        // returns how many bytes it let go of (0: nothing left to give).
        // Called without any lock of the manager held.
        virtual std::size_t evict(std::size_t bytes) = 0;
        virtual ~Evictable() = default;
    };

    std::size_t getBudget() const;
    // For tests and the host's options. A smaller budget does not evict at
    // once: the next reservation makes room.
    void setBudget(std::size_t bytes);
    // Live factory buffers plus the bytes held by memory caches.
    std::size_t getUsed() const;
    // Of getUsed(), what was reserved as evictable (cache entries).
    std::size_t getUsedEvictable() const;
    // The highest getUsed() since the start or the last resetPeak().
    std::size_t getPeak() const;
    void resetPeak();

    // The evictable must outlive its registration; removal waits for an
    // eviction that is calling it.
    void addEvictable(Evictable* evictable);
    void removeEvictable(Evictable* evictable);

    // Adds `bytes` to the used memory once they fit within the budget,
    // evicting cache entries until they do; false, and nothing added, when
    // even an empty cache leaves no room. Neither kind may overshoot the
    // budget: a cache entry that does not fit is simply not kept.
    // `evictable` says that the bytes belong to a cache entry (counted in
    // getUsedEvictable()), which eviction gives back through release().
    // Never call it while holding a lock that an Evictable's evict() takes.
    bool reserve(std::size_t bytes, bool evictable);
    // Gives back bytes of an earlier reserve(bytes, evictable).
    void release(std::size_t bytes, bool evictable = false);

    // The budget that the environment gives, or the default (for the log and tests).
    static std::size_t readBudgetFromEnvironment();
    static std::size_t computeDefaultBudget();

    StBufferManager(StBufferManager const&) = delete;
    StBufferManager& operator=(StBufferManager const&) = delete;

private:
    StBufferManager();
    // Under _mutex: adds the bytes if they fit.
    bool tryAdd(std::size_t bytes, bool evictable);

    mutable std::mutex _mutex;
    std::size_t _budget = 0;
    std::size_t _used = 0;
    std::size_t _usedEvictable = 0;
    std::size_t _peak = 0;

    // Held shared while evictables are being called, so that one is never
    // removed in the middle of its evict().
    mutable std::shared_mutex _evictablesLock;
    std::vector<Evictable*> _evictables;
};

} // namespace Qv
