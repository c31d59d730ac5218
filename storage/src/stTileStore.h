#pragma once
// The memory tier of the image caches: one store for the whole process,
// shared by every caching node, entries found by StTileKey and dropped least
// recently used first when the image memory budget needs room (it is the
// budget's Evictable). Thread-safe; its lock is held for the map and list
// operations only, never while a tile is computed, copied or freed.
//
// An entry holds a PxImageResult as given: the caller hands over a finished
// tile and never writes it again, since every later reader shares its pixels.
//
// Bytes against the budget: a tile whose pixels come from StBsBufferFactory
// is counted there already, for as long as anyone holds it; the store counts
// the pixels of any other tile itself while it keeps it.
#include "pxImageResults.h"
#include "pxValidityInterval.h"
#include "stBufferManager.h"
#include "stTileKey.h"

#include <atomic>
#include <cstddef>
#include <list>
#include <mutex>
#include <unordered_map>

namespace Qv {

class StTileStore : public StBufferManager::Evictable {
public:
    static StTileStore& getInstance();

    // The result stored under the key, now the most recently used; a miss is
    // PxImageResult() (the invalid tile, an empty interval).
    PxImageResult get(StTileKey const& key);
    // Stores the result under the key, in place of what was there. False,
    // and nothing stored, when the budget cannot hold its pixels even after
    // eviction. Asserts a valid tile.
    bool put(StTileKey const& key, PxImageResult const& result);

    std::size_t evict(std::size_t bytes) override;

    // Drops the entries of that storage id and variant whose interval meets
    // `interval`; returns how many went.
    std::size_t remove(Uuid const& storageId, std::string const& variant, PxValidityInterval const& interval);
    // Drops every entry of the storage id, whatever its variant.
    std::size_t remove(Uuid const& storageId);
    // Empties the store: what a new process would find.
    void clear();

    std::size_t getNbEntries() const;
    // Pixel bytes of the entries, counted here or by the factory.
    std::size_t getBytes() const;
    std::size_t getNbHits() const { return _nbHits.load(std::memory_order_relaxed); }
    std::size_t getNbMisses() const { return _nbMisses.load(std::memory_order_relaxed); }

    StTileStore(StTileStore const&) = delete;
    StTileStore& operator=(StTileStore const&) = delete;

private:
    struct Entry {
        StTileKey key;
        PxImageResult result;
        std::size_t bytes = 0;   // the tile's pixel bytes
        std::size_t charged = 0; // what this store reserved for them
    };
    using List = std::list<Entry>;

    StTileStore();
    ~StTileStore() override;
    // Gives the entries' reservations back; their tiles go with the list, out of the lock.
    static void dispose(List& entries);
    // Under _lock: moves the entry into `out`.
    void unlink(List::iterator entry, List& out);
    template <class Predicate>
    std::size_t removeIf(Predicate const& predicate);

    mutable std::mutex _lock;
    List _lru; // most recently used first
    std::unordered_map<StTileKey, List::iterator, StTileKeyHash> _index;
    std::size_t _bytes = 0;
    std::atomic<std::size_t> _nbHits{0};
    std::atomic<std::size_t> _nbMisses{0};
};

} // namespace Qv
