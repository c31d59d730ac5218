#include "imMemoryBuffer.h"

#include <new>

namespace Qv {

namespace {
constexpr std::align_val_t ALIGN{64};
}

ImMemoryBuffer::ImMemoryBuffer(std::size_t size)
    : _data(static_cast<std::byte*>(::operator new(size == 0 ? 1 : size, ALIGN))), _size(size) {}

ImMemoryBuffer::~ImMemoryBuffer() {
    ::operator delete(_data, ALIGN);
}

ImMemoryBuffer::Factory const& ImMemoryBuffer::Factory::getInstance() {
    static Factory const instance;
    return instance;
}

RCShdPtr<ImMemory> ImMemoryBuffer::Factory::create(std::size_t size) const {
    return RCShdPtr<ImMemory>(new ImMemoryBuffer(size));
}

} // namespace Qv
