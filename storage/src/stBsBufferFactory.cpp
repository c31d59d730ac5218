#include "stBsBufferFactory.h"

#include "assertions.h"
#include "stBufferEx.h"
#include "stBufferManager.h"

#include <cstdlib>
#include <fmt/format.h>
#include <new>

namespace Qv {

// One aligned block of the heap, counted against the budget and its label
// for as long as it lives.
class StBsBufferFactory::Block : public IxTileMemory {
public:
    Block(std::byte* data, std::size_t size, std::atomic<std::size_t>* counter)
        : _data(data), _size(size), _counter(counter) {}

    std::byte* getData() const override { return _data; }
    std::size_t getSize() const override { return _size; }

protected:
    ~Block() override {
        std::free(_data);
        if (_size > 0) {
            _counter->fetch_sub(_size, std::memory_order_relaxed);
            StBufferManager::getInstance().release(_size);
        }
    }

private:
    std::byte* _data;
    std::size_t _size;
    std::atomic<std::size_t>* _counter;
};

StBsBufferFactory& StBsBufferFactory::getInstance() {
    // Never deleted: blocks point at its counters until the very end.
    static StBsBufferFactory* const instance = new StBsBufferFactory;
    return *instance;
}

std::atomic<std::size_t>& StBsBufferFactory::getCounter(std::string const& label) {
    std::lock_guard lock(_labelsLock);
    auto found = _liveBytes.find(label);
    if (found == _liveBytes.end())
        found = _liveBytes.emplace(label, std::make_unique<std::atomic<std::size_t>>(0)).first;
    return *found->second;
}

IxTileMemoryPtr StBsBufferFactory::allocate(std::size_t size, std::size_t alignment,
                                            std::string const& label) {
    QV_ASSERT(alignment > 0 && (alignment & (alignment - 1)) == 0);
    std::atomic<std::size_t>& counter = getCounter(label);
    if (size == 0)
        return IxTileMemoryPtr(new Block(nullptr, 0, &counter));
    alignment = std::max(alignment, IxTile::MIN_LINE_ALIGN);
    StBufferManager& manager = StBufferManager::getInstance();
    if (!manager.reserve(size, false))
        throw StBufferEx::ExOutOfBuffers(
            __FILE__, __LINE__,
            fmt::format(
                "Out of image memory buffers: {} bytes for \"{}\" do not fit in the budget of {} bytes "
                "({} in use); QV_IMAGE_MEMORY_MB sets the budget",
                size, label, manager.getBudget(), manager.getUsed()));
    // aligned_alloc wants a size that is a multiple of the alignment.
    std::size_t const rounded = (size + alignment - 1) / alignment * alignment;
    auto* data = static_cast<std::byte*>(std::aligned_alloc(alignment, rounded));
    if (!data) {
        manager.release(size);
        throw std::bad_alloc();
    }
    counter.fetch_add(size, std::memory_order_relaxed);
    return IxTileMemoryPtr(new Block(data, size, &counter));
}

IxTile StBsBufferFactory::createTile(IxPixelFormat const& format, GeRectangle<int> const& region,
                                     std::string const& label, CoRgbaColorTyped<float> const& fill) {
    std::size_t const size = IxTile::computeBufferSize(format, region);
    IxTileMemoryPtr memory;
    if (size > 0)
        memory = allocate(size, IxTile::MIN_LINE_ALIGN, label);
    return IxTileManip::createTile(format, region, std::move(memory), fill);
}

std::size_t StBsBufferFactory::getLiveBytes(std::string const& label) const {
    std::lock_guard lock(_labelsLock);
    auto found = _liveBytes.find(label);
    return found == _liveBytes.end() ? 0 : found->second->load(std::memory_order_relaxed);
}

bool StBsBufferFactory::isFactoryMemory(IxTile const& tile) {
    if (!tile.isValid() || tile.isEmpty())
        return false;
    return dynamic_cast<Block const*>(IxTileManip::getMemory(tile).get()) != nullptr;
}

} // namespace Qv
