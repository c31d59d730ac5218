#pragma once
// A file-side image for reading: a layout over shared memory. Copies share
// the pixels. The default image is null: a reader returns it at the end of
// the file. Pixels are reached through ImReadGuard.
#include "imLayout.h"
#include "imMemory.h"

#include <cstddef>

namespace Qv {

class ImImageConst {
public:
    ImImageConst() = default;
    // `offset` is where row y1 starts in the memory. Asserts that the layout fits.
    ImImageConst(ImLayout const& layout, ImMemoryPtr memory, std::size_t offset = 0);

    bool isNull() const { return _memory.isNull(); }
    ImLayout const& getLayout() const { return _layout; }
    GeRectangle<int> const& getRect() const { return _layout.getRect(); }
    ImFormat const& getFormat() const { return _layout.getFormat(); }
    ImMemoryPtr const& getMemory() const { return _memory; }
    // Where row y1 starts in the memory.
    std::size_t getOffset() const { return _offset; }

protected:
    friend class ImImageGuard;
    std::byte* getOrigin() const { return _memory->getData() + _offset; }

private:
    ImLayout _layout;
    ImMemoryPtr _memory;
    std::size_t _offset = 0;
};

} // namespace Qv
