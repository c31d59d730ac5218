#include "mbBuffer.h"

#include <new>

namespace Qv {

RCShdPtr<MbBuffer> MbBuffer::create(std::size_t size) {
    return RCShdPtr<MbBuffer>(new MbBuffer(size));
}

MbBuffer::MbBuffer(std::size_t size)
    : _data(size ? static_cast<std::byte*>(::operator new(size, std::align_val_t(ALIGNMENT))) : nullptr),
      _size(size) {}

MbBuffer::~MbBuffer() {
    if (_data)
        ::operator delete(_data, std::align_val_t(ALIGNMENT));
}

} // namespace Qv
