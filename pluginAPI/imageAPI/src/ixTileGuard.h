#pragma once
// What read and write guards share: the tile they map, where its pixels lie,
// and the access they registered on it. A checked guard registers itself, so
// that a writer never meets a reader of the same tile; a guard made without
// checks (IxTileManip) or from a write guard registers nothing.
#include "geRectangle.h"
#include "ixTile.h"

#include <cstddef>

namespace Qv {

class IxTileGuard {
public:
    // The empty guard maps nothing.
    bool isNull() const { return !_tile.isValid(); }
    IxTile const& getTile() const { return _tile; }
    IxPixelFormat const& getPixelFormat() const { return _tile.getPixelFormat(); }
    GeRectangle<int> const& getPixelRegion() const { return _tile.getPixelRegion(); }
    CoRgbaColorTyped<float> const& getFillColor() const { return _tile.getFillColor(); }
    std::size_t getRowBytes() const { return _rowBytes; }

protected:
    enum class Access { NONE, READ, WRITE };

    IxTileGuard() = default;
    IxTileGuard(IxTile const& tile, Access access);
    IxTileGuard(IxTileGuard const& other);
    IxTileGuard& operator=(IxTileGuard const& other);
    ~IxTileGuard();

    // Start of row y; asserts that the row is in the region.
    std::byte* lineAddress(int y) const;
    // Pixel (x, y); asserts that it is in the region.
    std::byte* pixelAddress(int x, int y) const;

private:
    void acquire();
    void release();

    IxTile _tile;
    Access _access = Access::NONE;
    std::byte* _origin = nullptr;
    std::size_t _rowBytes = 0;
    std::size_t _pixelBytes = 0;
    int _x1 = 0;
    int _y1 = 0;
    int _y2 = 0;
};

} // namespace Qv
