#pragma once
// The memory behind a tile's pixels. A tile keeps it alive; what provides it
// (a plain buffer, a cache's block) stays behind this interface.
#include "rcBase.h"
#include "rcShdPtr.h"

#include <cstddef>

namespace Qv {

class IxTileMemory : public RCBase<> {
public:
    virtual std::byte* getData() const = 0;
    virtual std::size_t getSize() const = 0;

protected:
    ~IxTileMemory() override = default;
};

using IxTileMemoryPtr = RCShdPtr<IxTileMemory>;

} // namespace Qv
