#pragma once
// Tile memory made of the system's memory buffers.
#include "ixTileMemory.h"
#include "mbBuffer.h"

namespace Qv {

struct IxMemResourceImp {
    // Tile memory over one MbBuffer, which it shares.
    class TileMemoryBuffer : public IxTileMemory {
    public:
        explicit TileMemoryBuffer(RCShdPtr<MbBuffer> buffer) : _buffer(std::move(buffer)) {}

        std::byte* getData() const override { return _buffer.isNull() ? nullptr : _buffer->getData(); }
        std::size_t getSize() const override { return _buffer.isNull() ? 0 : _buffer->getSize(); }
        RCShdPtr<MbBuffer> const& getBuffer() const { return _buffer; }

    private:
        RCShdPtr<MbBuffer> _buffer;
    };

    // New memory of that many bytes.
    static IxTileMemoryPtr allocate(std::size_t size) {
        return IxTileMemoryPtr(new TileMemoryBuffer(MbBuffer::create(size)));
    }
};

} // namespace Qv
