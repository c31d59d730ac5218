#pragma once
// A file-side image that may be written: the same layout over shared memory
// as ImImageConst, with write access through ImWriteGuard.
#include "imImageConst.h"

namespace Qv {

class ImImage : public ImImageConst {
public:
    ImImage() = default;
    ImImage(ImLayout const& layout, ImMemoryPtr memory, std::size_t offset = 0)
        : ImImageConst(layout, std::move(memory), offset) {}
    // New memory of the factory for the layout.
    ImImage(ImLayout const& layout, ImMemory::Factory const& factory)
        : ImImageConst(layout, factory.create(layout.getSize())) {}
};

} // namespace Qv
