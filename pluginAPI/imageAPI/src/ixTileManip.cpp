#include "ixTileManip.h"

#include "assertions.h"

#include <cstdint>

namespace Qv {

IxTileMemoryPtr const& IxTileManip::getMemory(IxTile const& tile) {
    return tile.data().memory;
}

IxTile IxTileManip::createTile(IxPixelFormat const& format, GeRectangle<int> const& region,
                               IxTileMemoryPtr memory, CoRgbaColorTyped<float> const& fill) {
    std::size_t const size = IxTile::computeBufferSize(format, region);
    if (size > 0) {
        QV_ASSERT(!memory.isNull() && memory->getSize() >= size);
        QV_ASSERT(reinterpret_cast<std::uintptr_t>(memory->getData()) % IxTile::MIN_LINE_ALIGN == 0);
    }
    return IxTile(IxTile::makeData(format, region, std::move(memory), fill));
}

} // namespace Qv
