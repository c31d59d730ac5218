#pragma once
// Read access to a tile's pixels for the guard's lifetime. Asserts that the
// tile is valid ("isValid()") and that no write guard holds it.
#include "ixTileGuard.h"

namespace Qv {

class IxWriteGuard;

class IxReadGuard : public IxTileGuard {
public:
    IxReadGuard() = default;
    explicit IxReadGuard(IxTile const& tile);
    // Reads what the write guard is writing; no check, no registration: the
    // writer and this reader are the same piece of code.
    IxReadGuard(IxWriteGuard const& writeGuard);

    std::byte const* getLine(int y) const { return lineAddress(y); }
    template <class T>
    T const* getLineAs(int y) const {
        return reinterpret_cast<T const*>(lineAddress(y));
    }
    std::byte const* getPixel(int x, int y) const { return pixelAddress(x, y); }

protected:
    struct NoCheck {};
    IxReadGuard(IxTile const& tile, NoCheck);
};

} // namespace Qv
