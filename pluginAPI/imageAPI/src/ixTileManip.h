#pragma once
// Low-level tile operations for the code that manages tile memory itself
// (caches, file readers, format conversion): derive from IxTileManip to reach them.
#include "ixReadGuard.h"
#include "ixTile.h"
#include "ixWriteGuard.h"

namespace Qv {

class IxTileManip {
protected:
    // The memory behind a tile's pixels; null for an empty tile. Asserts "isValid()".
    static IxTileMemoryPtr const& getMemory(IxTile const& tile);
    // A tile over memory that the caller provides, laid out as computeBufferSize
    // says. Asserts a valid format, enough bytes and MIN_LINE_ALIGN alignment.
    static IxTile createTile(IxPixelFormat const& format, GeRectangle<int> const& region,
                             IxTileMemoryPtr memory,
                             CoRgbaColorTyped<float> const& fill = CoRgbaColorTyped<float>::ZERO);

    // Guards that neither check nor register their access: for a tile still
    // under construction, or shared by a protocol that orders access itself.
    class ReadGuardNoCheck : public IxReadGuard {
    public:
        explicit ReadGuardNoCheck(IxTile const& tile) : IxReadGuard(tile, NoCheck{}) {}
    };
    class WriteGuardNoCheck : public IxWriteGuard {
    public:
        explicit WriteGuardNoCheck(IxTile const& tile) : IxWriteGuard(tile, NoCheck{}) {}
    };
};

} // namespace Qv
