#pragma once
// Pixel memory counted against the image memory budget (StBufferManager):
// aligned blocks, each with a label that says what it is for ("PartialTile",
// "DiskCache"), so that statistics can tell who holds the memory. A block
// gives its bytes back to the budget when its last holder lets go.
#include "coColor.h"
#include "geRectangle.h"
#include "ixPixelFormat.h"
#include "ixTile.h"
#include "ixTileManip.h"
#include "ixTileMemory.h"

#include <atomic>
#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace Qv {

class StBsBufferFactory : private IxTileManip {
public:
    static StBsBufferFactory& getInstance();

    // `size` bytes aligned to `alignment` (a power of two; at least
    // IxTile::MIN_LINE_ALIGN is given), for IxTileManip::createTile. Throws
    // StBufferEx::ExOutOfBuffers when the budget cannot hold them even after
    // evicting caches, std::bad_alloc when the system has no memory left.
    // A size of 0 gives memory without bytes, counted nowhere.
    IxTileMemoryPtr allocate(std::size_t size, std::size_t alignment, std::string const& label);
    // A tile over such memory, rows aligned to IxTile::MIN_LINE_ALIGN; the
    // pixels are not initialised. An empty region gives a tile without pixels.
    IxTile createTile(IxPixelFormat const& format, GeRectangle<int> const& region, std::string const& label,
                      CoRgbaColorTyped<float> const& fill = CoRgbaColorTyped<float>::ZERO);

    // Bytes of the live blocks of that label.
    std::size_t getLiveBytes(std::string const& label) const;
    // Whether the tile's pixels are memory of this factory, so already counted
    // against the budget (the memory tier counts the others itself).
    static bool isFactoryMemory(IxTile const& tile);

    StBsBufferFactory(StBsBufferFactory const&) = delete;
    StBsBufferFactory& operator=(StBsBufferFactory const&) = delete;

private:
    class Block;
    StBsBufferFactory() = default;
    std::atomic<std::size_t>& getCounter(std::string const& label);

    mutable std::mutex _labelsLock;
    // A counter per label, never removed, so that blocks may point at theirs.
    std::map<std::string, std::unique_ptr<std::atomic<std::size_t>>, std::less<>> _liveBytes;
};

} // namespace Qv
