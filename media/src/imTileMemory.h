#pragma once
// A tile's pixel memory seen as file-side image memory, so that a tile is
// written to a file, or filled from one, without a copy.
#include "imImage.h"
#include "ixTile.h"

namespace Qv {

namespace ImTileMemory {
// The tile's pixels as an image of the same rectangle and rows; a null image
// for an empty tile. Throws IxEx::ExUnsupportedFormat for COMPLEX pixels.
ImImage view(IxTile const& tile, char const* operation);
} // namespace ImTileMemory

} // namespace Qv
