#include "imTileMemory.h"

#include "ixPixelTypes.h"
#include "ixTileManip.h"
#include "ixUtil.h"

namespace Qv {

namespace {

class TileMemory : public ImMemory {
public:
    explicit TileMemory(IxTileMemoryPtr memory) : _memory(std::move(memory)) {}
    std::byte* getData() const override { return _memory->getData(); }
    std::size_t getSize() const override { return _memory->getSize(); }

private:
    IxTileMemoryPtr _memory;
};

class TileAccess : public IxTileManip {
public:
    using IxTileManip::getMemory;
};

} // namespace

ImImage ImTileMemory::view(IxTile const& tile, char const* operation) {
    IxPixelFormat const& pixelFormat = tile.getPixelFormat();
    if (pixelFormat.getDepth() == IxPixelFormat::COMPLEX)
        ixThrowUnsupported(operation, pixelFormat);
    IxTileMemoryPtr const& memory = TileAccess::getMemory(tile);
    if (tile.isEmpty() || memory.isNull())
        return {};
    ImLayout const layout(tile.getPixelRegion(), IxUtil::ixToImPixelFormat(pixelFormat), tile.getRowBytes());
    return ImImage(layout, ImMemoryPtr(new TileMemory(memory)));
}

} // namespace Qv
