#pragma once
// A block of raw memory shared by reference, aligned for vector loads. Not
// cleared: whoever allocates pixels writes them before anyone reads them.
#include "rcBase.h"
#include "rcShdPtr.h"

#include <cstddef>

namespace Qv {

class MbBuffer : public RCBase<> {
public:
    static constexpr std::size_t ALIGNMENT = 64;

    // Throws std::bad_alloc when the memory is not there.
    static RCShdPtr<MbBuffer> create(std::size_t size);

    std::byte* getData() const { return _data; }
    std::size_t getSize() const { return _size; }

    MbBuffer(MbBuffer const&) = delete;
    MbBuffer& operator=(MbBuffer const&) = delete;

private:
    explicit MbBuffer(std::size_t size);
    ~MbBuffer() override;

    std::byte* _data = nullptr;
    std::size_t _size = 0;
};

} // namespace Qv
