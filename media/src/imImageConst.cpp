#include "imImageConst.h"

#include "assertions.h"

namespace Qv {

ImImageConst::ImImageConst(ImLayout const& layout, ImMemoryPtr memory, std::size_t offset)
    : _layout(layout), _memory(std::move(memory)), _offset(offset) {
    QV_ASSERT(!_memory.isNull());
    QV_ASSERT(offset + layout.getSize() <= _memory->getSize());
}

} // namespace Qv
