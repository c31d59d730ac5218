#include "mbBuffer.h"

#include <cstdint>
#include <mutex>
#include <new>
#include <unordered_map>
#include <vector>

namespace Qv {

namespace {

// Address sanitizer builds do not recycle: reuse would hide a use after free.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool RECYCLING = false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool RECYCLING = false;
#else
constexpr bool RECYCLING = true;
#endif
#else
constexpr bool RECYCLING = true;
#endif

std::byte* allocateAligned(std::size_t size) {
    return static_cast<std::byte*>(::operator new(size, std::align_val_t(MbBuffer::ALIGNMENT)));
}

void freeAligned(std::byte* data) {
    ::operator delete(data, std::align_val_t(MbBuffer::ALIGNMENT));
}

// Freed blocks by size. Few sizes occur (the tile grid's full, edge and corner
// tiles of a few formats), so the lists are few and the lock brief. When the
// limit is reached, the blocks of the size asked for least recently give way
// to a block of a size in use.
class RecyclePool {
public:
    std::byte* take(std::size_t size) {
        std::lock_guard lock(_mutex);
        auto found = _free.find(size);
        if (found == _free.end())
            return nullptr;
        found->second.lastUse = ++_clock;
        if (found->second.blocks.empty())
            return nullptr;
        std::byte* data = found->second.blocks.back();
        found->second.blocks.pop_back();
        _bytes -= size;
        return data;
    }

    // False when the block does not fit under the limit, even with the
    // blocks of other sizes gone: the caller frees it.
    bool give(std::byte* data, std::size_t size) {
        std::lock_guard lock(_mutex);
        if (size > _limit)
            return false;
        SizeList& list = _free[size];
        list.lastUse = ++_clock;
        if (list.blocks.size() * size > _limit - size)
            return false;
        while (_bytes > _limit - size) {
            auto oldest = _free.end();
            for (auto it = _free.begin(); it != _free.end(); ++it)
                if (it->first != size && !it->second.blocks.empty() &&
                    (oldest == _free.end() || it->second.lastUse < oldest->second.lastUse))
                    oldest = it;
            // Rare (the sizes in use change), so freed under the lock.
            freeAligned(oldest->second.blocks.back());
            oldest->second.blocks.pop_back();
            _bytes -= oldest->first;
        }
        list.blocks.push_back(data);
        _bytes += size;
        return true;
    }

    void setLimit(std::size_t bytes) {
        std::vector<std::byte*> excess;
        {
            std::lock_guard lock(_mutex);
            _limit = bytes;
            for (auto& [size, list] : _free)
                while (_bytes > _limit && !list.blocks.empty()) {
                    excess.push_back(list.blocks.back());
                    list.blocks.pop_back();
                    _bytes -= size;
                }
        }
        for (std::byte* data : excess)
            freeAligned(data);
    }

    std::size_t getLimit() const {
        std::lock_guard lock(_mutex);
        return _limit;
    }

    std::size_t getBytes() const {
        std::lock_guard lock(_mutex);
        return _bytes;
    }

private:
    struct SizeList {
        std::vector<std::byte*> blocks;
        std::uint64_t lastUse = 0;
    };

    mutable std::mutex _mutex;
    std::unordered_map<std::size_t, SizeList> _free;
    std::uint64_t _clock = 0;
    std::size_t _bytes = 0;
    std::size_t _limit = RECYCLING ? MbBuffer::DEFAULT_RECYCLE_LIMIT : 0;
};

RecyclePool& pool() {
    // Never deleted: buffers may be freed during the exit of the process.
    static RecyclePool* const instance = new RecyclePool;
    return *instance;
}

} // namespace

RCShdPtr<MbBuffer> MbBuffer::create(std::size_t size) {
    std::byte* data = nullptr;
    if (size >= MIN_RECYCLED_SIZE)
        data = pool().take(size);
    if (!data && size)
        data = allocateAligned(size);
    try {
        return RCShdPtr<MbBuffer>(new MbBuffer(data, size));
    } catch (...) {
        if (data)
            freeAligned(data);
        throw;
    }
}

MbBuffer::~MbBuffer() {
    if (!_data)
        return;
    if (_size >= MIN_RECYCLED_SIZE) {
        try {
            if (pool().give(_data, _size))
                return;
        } catch (std::bad_alloc const&) {
            // No room for the list's entry: the block goes back to the system.
        }
    }
    freeAligned(_data);
}

void MbBuffer::setRecycleLimit(std::size_t bytes) {
    pool().setLimit(RECYCLING ? bytes : 0);
}

std::size_t MbBuffer::getRecycleLimit() {
    return pool().getLimit();
}

std::size_t MbBuffer::getRecycledBytes() {
    return pool().getBytes();
}

} // namespace Qv
