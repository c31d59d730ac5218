#include "pxRequest.h"

#include <new>
#include <utility>

namespace Qv {

namespace {

// Blocks of a few fixed sizes, kept per thread on free lists. A block freed
// on another thread than the one that took it joins that thread's list: each
// list is bounded, so blocks that drift one way go back to the heap.
constexpr std::size_t BLOCK_STEP = 64;
constexpr std::size_t NB_CLASSES = 8; // up to 512 bytes
constexpr std::size_t MAX_CACHED_BYTES = std::size_t(1) << 20;

struct FreeBlock {
    FreeBlock* next;
};

struct BlockCache {
    FreeBlock* heads[NB_CLASSES] = {};
    std::size_t counts[NB_CLASSES] = {};

    ~BlockCache();
};

thread_local BlockCache t_cache;
// Trivially destructible, so still readable after the cache is gone: a
// request destroyed late in a thread's exit goes straight to the heap.
thread_local bool t_cacheGone = false;

BlockCache::~BlockCache() {
    for (FreeBlock*& head : heads)
        while (head)
            ::operator delete(std::exchange(head, head->next));
    t_cacheGone = true;
}

std::size_t getSizeClass(std::size_t size) noexcept {
    return (size + BLOCK_STEP - 1) / BLOCK_STEP - 1;
}

} // namespace

void* PxRequest::operator new(std::size_t size) {
    std::size_t const sizeClass = getSizeClass(size);
    if (sizeClass >= NB_CLASSES || t_cacheGone)
        return ::operator new(size);
    BlockCache& cache = t_cache;
    if (FreeBlock* block = cache.heads[sizeClass]) {
        cache.heads[sizeClass] = block->next;
        --cache.counts[sizeClass];
        return block;
    }
    return ::operator new((sizeClass + 1) * BLOCK_STEP);
}

void PxRequest::operator delete(void* block, std::size_t size) noexcept {
    if (!block)
        return;
    std::size_t const sizeClass = getSizeClass(size);
    if (sizeClass >= NB_CLASSES || t_cacheGone) {
        ::operator delete(block);
        return;
    }
    BlockCache& cache = t_cache;
    if (cache.counts[sizeClass] * (sizeClass + 1) * BLOCK_STEP >= MAX_CACHED_BYTES) {
        ::operator delete(block);
        return;
    }
    auto* freeBlock = static_cast<FreeBlock*>(block);
    freeBlock->next = cache.heads[sizeClass];
    cache.heads[sizeClass] = freeBlock;
    ++cache.counts[sizeClass];
}

PxRequest::~PxRequest() = default;

std::string PxRequest::getRequestType() const {
    return "Request";
}

int PxRequest::getPriorityLevel() const {
    return 0;
}

void PxRequest::completeExecution() {}

void PxRequest::postExecute() {}

void PxRequest::performCleanUp() {}

bool PxRequest::isExclusive() const {
    return false;
}

bool PxRequest::isCancelledWithAncestors() const noexcept {
    for (PxRequest const* request = this; request; request = request->_parent)
        if (request->isCancelled())
            return true;
    return false;
}

bool PxRequest::descendsFrom(PxRequest const* ancestor) const noexcept {
    for (PxRequest const* request = this; request; request = request->_parent)
        if (request == ancestor)
            return true;
    return false;
}

} // namespace Qv
