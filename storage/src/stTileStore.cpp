#include "stTileStore.h"

#include "assertions.h"
#include "stBsBufferFactory.h"

namespace Qv {

StTileStore& StTileStore::getInstance() {
    // Never deleted: tiles handed out may outlive any order of static destruction.
    static StTileStore* const instance = new StTileStore;
    return *instance;
}

StTileStore::StTileStore() {
    StBufferManager::getInstance().addEvictable(this);
}

StTileStore::~StTileStore() {
    StBufferManager::getInstance().removeEvictable(this);
    clear();
}

PxImageResult StTileStore::get(StTileKey const& key) {
    std::lock_guard lock(_lock);
    auto const found = _index.find(key);
    if (found == _index.end()) {
        _nbMisses.fetch_add(1, std::memory_order_relaxed);
        return PxImageResult();
    }
    _lru.splice(_lru.begin(), _lru, found->second);
    _nbHits.fetch_add(1, std::memory_order_relaxed);
    return found->second->result;
}

bool StTileStore::put(StTileKey const& key, PxImageResult const& result) {
    QV_ASSERT(result.getTile().isValid());
    Entry entry{key, result, result.getTile().getBufferSize(), 0};
    if (!StBsBufferFactory::isFactoryMemory(result.getTile()))
        entry.charged = entry.bytes;
    // Reserved before the lock: making room calls evict(), which takes it.
    if (entry.charged > 0 && !StBufferManager::getInstance().reserve(entry.charged, true))
        return false;
    List replaced;
    {
        std::lock_guard lock(_lock);
        auto const found = _index.find(key);
        if (found != _index.end())
            unlink(found->second, replaced);
        _lru.push_front(std::move(entry));
        _index.emplace(key, _lru.begin());
        _bytes += _lru.front().bytes;
    }
    dispose(replaced);
    return true;
}

void StTileStore::unlink(List::iterator entry, List& out) {
    _bytes -= entry->bytes;
    _index.erase(entry->key);
    out.splice(out.end(), _lru, entry);
}

void StTileStore::dispose(List& entries) {
    for (Entry const& entry : entries)
        if (entry.charged > 0)
            StBufferManager::getInstance().release(entry.charged, true);
    entries.clear();
}

std::size_t StTileStore::evict(std::size_t bytes) {
    List evicted;
    std::size_t freed = 0;
    {
        std::lock_guard lock(_lock);
        while (freed < bytes && !_lru.empty()) {
            freed += _lru.back().bytes;
            unlink(std::prev(_lru.end()), evicted);
        }
    }
    dispose(evicted);
    return freed;
}

template <class Predicate>
std::size_t StTileStore::removeIf(Predicate const& predicate) {
    List removed;
    {
        std::lock_guard lock(_lock);
        for (auto entry = _lru.begin(); entry != _lru.end();) {
            auto const next = std::next(entry);
            if (predicate(*entry))
                unlink(entry, removed);
            entry = next;
        }
    }
    std::size_t const count = removed.size();
    dispose(removed);
    return count;
}

std::size_t StTileStore::remove(Uuid const& storageId, std::string const& variant,
                                PxValidityInterval const& interval) {
    return removeIf([&](Entry const& entry) {
        return entry.key.storageId == storageId && entry.key.variant == variant &&
               entry.result.getVI().getIntersection(interval).isNonEmpty();
    });
}

std::size_t StTileStore::remove(Uuid const& storageId) {
    return removeIf([&](Entry const& entry) { return entry.key.storageId == storageId; });
}

void StTileStore::clear() {
    removeIf([](Entry const&) { return true; });
}

std::size_t StTileStore::getNbEntries() const {
    std::lock_guard lock(_lock);
    return _lru.size();
}

std::size_t StTileStore::getBytes() const {
    std::lock_guard lock(_lock);
    return _bytes;
}

} // namespace Qv
