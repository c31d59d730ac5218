#pragma once
// The bytes behind a file-side image, shared by the images that view them.
// Who provides them (a heap buffer, a tile's memory, a cache's block) stays
// behind this interface; a Factory makes new ones, so that a reader fills
// memory of its caller's choosing.
#include "rcBase.h"
#include "rcShdPtr.h"

#include <cstddef>

namespace Qv {

class ImMemory : public RCBase<> {
public:
    virtual std::byte* getData() const = 0;
    virtual std::size_t getSize() const = 0;

    class Factory {
    public:
        virtual ~Factory() = default;
        // At least `size` bytes, aligned to 64.
        virtual RCShdPtr<ImMemory> create(std::size_t size) const = 0;
    };

protected:
    ~ImMemory() override = default;
};

using ImMemoryPtr = RCShdPtr<ImMemory>;

} // namespace Qv
