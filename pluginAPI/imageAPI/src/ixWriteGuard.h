#pragma once
// Write access to a tile's pixels for the guard's lifetime. Asserts that the
// tile is valid ("isValid()") and that no read guard holds it; several write
// guards may hold one tile, for work split into disjoint strips.
#include "ixTileGuard.h"

namespace Qv {

class IxWriteGuard : public IxTileGuard {
public:
    IxWriteGuard() = default;
    explicit IxWriteGuard(IxTile const& tile);

    std::byte* getLine(int y) const { return lineAddress(y); }
    template <class T>
    T* getLineAs(int y) const {
        return reinterpret_cast<T*>(lineAddress(y));
    }
    std::byte* getPixel(int x, int y) const { return pixelAddress(x, y); }

protected:
    struct NoCheck {};
    IxWriteGuard(IxTile const& tile, NoCheck);
};

} // namespace Qv
