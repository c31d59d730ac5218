#pragma once
// File-side image memory on the heap, aligned to 64 bytes.
#include "imMemory.h"

#include <cstddef>

namespace Qv {

class ImMemoryBuffer : public ImMemory {
public:
    // Throws std::bad_alloc.
    explicit ImMemoryBuffer(std::size_t size);
    ~ImMemoryBuffer() override;
    ImMemoryBuffer(ImMemoryBuffer const&) = delete;
    ImMemoryBuffer& operator=(ImMemoryBuffer const&) = delete;

    std::byte* getData() const override { return _data; }
    std::size_t getSize() const override { return _size; }

    class Factory : public ImMemory::Factory {
    public:
        static Factory const& getInstance();
        RCShdPtr<ImMemory> create(std::size_t size) const override;
    };

private:
    std::byte* _data;
    std::size_t _size;
};

} // namespace Qv
