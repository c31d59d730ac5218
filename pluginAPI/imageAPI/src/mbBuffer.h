#pragma once
// A block of raw memory shared by reference, aligned for vector loads. Not
// cleared: whoever allocates pixels writes them before anyone reads them.
//
// Blocks of tile size are recycled: a freed block of at least
// MIN_RECYCLED_SIZE bytes waits, up to a limit of bytes in all, for the next
// request of exactly its size. A node makes its tiles anew on every request;
// fresh memory costs a page fault per page on first touch, which is more than
// many kernels spend on the pixels themselves.
#include "rcBase.h"
#include "rcShdPtr.h"

#include <cstddef>

namespace Qv {

class MbBuffer : public RCBase<> {
public:
    static constexpr std::size_t ALIGNMENT = 64;
    static constexpr std::size_t MIN_RECYCLED_SIZE = std::size_t(64) << 10;
    static constexpr std::size_t DEFAULT_RECYCLE_LIMIT = std::size_t(64) << 20;

    // Throws std::bad_alloc when the memory is not there.
    static RCShdPtr<MbBuffer> create(std::size_t size);

    std::byte* getData() const { return _data; }
    std::size_t getSize() const { return _size; }

    // The most bytes that freed blocks may keep waiting for reuse; a lower
    // limit frees the excess at once. 0 turns recycling off.
    static void setRecycleLimit(std::size_t bytes);
    static std::size_t getRecycleLimit();
    // Bytes of the blocks waiting for reuse.
    static std::size_t getRecycledBytes();

    MbBuffer(MbBuffer const&) = delete;
    MbBuffer& operator=(MbBuffer const&) = delete;

private:
    MbBuffer(std::byte* data, std::size_t size) : _data(data), _size(size) {}
    ~MbBuffer() override;

    std::byte* _data = nullptr;
    std::size_t _size = 0;
};

} // namespace Qv
