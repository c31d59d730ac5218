#pragma once
// Drawing flat shapes into a tile, in the tile's pixel coordinates: pixel
// (x, y) is the square [x, x + 1) x [y, y + 1) and its centre is
// (x + 0.5, y + 0.5). Used to mark tiles visibly (the error tile of a failed
// read), so it takes shapes of any size and position and draws only what
// falls within the tile.
//
// Coverage follows the top-left rule: a pixel is drawn when its centre lies
// inside the triangle, or on an edge that is a left edge (the inside lies to
// its right) or a top edge (horizontal, with the inside below, y growing
// down). Triangles that share an edge thus draw each pixel along it exactly
// once, and a triangle of zero area draws nothing. Both windings are drawn.
//
//   IxWriteGuard const out(tile);
//   Rs2DBuffer(out).rasterizeUnclippedTriangle({0, 0}, {100, 0}, {0, 100}, {1, 0, 0, 1});
#include "coColor.h"
#include "gePoint2.h"
#include "ixWriteGuard.h"

#include <cstdint>

namespace Qv {

class Rs2DBuffer {
public:
    // Draws through the guard, which the buffer keeps a copy of.
    explicit Rs2DBuffer(IxWriteGuard guard);
    // Takes write access to the tile for the buffer's lifetime.
    explicit Rs2DBuffer(IxTile const& tile);

    GeRectangle<int> const& getPixelRegion() const { return _guard.getPixelRegion(); }

    // Sets the pixels the triangle covers, clipped to the tile, to the colour
    // in the tile's format; the vertices may lie anywhere. Works row by row
    // over the tile's rows only, so a triangle far larger than the tile costs
    // no more than one that fills it. Returns the number of pixels set.
    // Throws IxEx::ExUnsupportedFormat for COMPLEX pixels and
    // RsEx::ExBadGeometry for a non-finite coordinate, before it writes.
    std::int64_t rasterizeUnclippedTriangle(GePoint2<float> a, GePoint2<float> b, GePoint2<float> c,
                                            CoRgbaColorTyped<float> const& colour);

private:
    IxWriteGuard _guard;
};

} // namespace Qv
