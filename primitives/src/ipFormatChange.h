#pragma once
#include "geRectangle.h"
#include "ixReadGuard.h"
#include "ixWriteGuard.h"

namespace Qv {

// The source's pixels converted to the destination's format over the region
// (null: the whole destination), pixel for pixel at the same coordinates;
// where the source has no pixel, its fill colour. UINT8 clamps to [0, 1];
// FLOAT16 rounds to nearest even. COMPLEX pixels throw IxEx::ExUnsupportedFormat.
void ipFormatChange(IxWriteGuard const& dst, IxReadGuard const& src,
                    GeRectangle<int> const* region = nullptr);

// The source's pixels of srcRegion (null: all of them) put at dstRegion's
// corner (null: where they are), over dstRegion narrowed to the destination;
// converted when the formats differ, the source's fill colour where it has
// no pixel.
void ipCopy(IxWriteGuard const& dst, IxReadGuard const& src, GeRectangle<int> const* dstRegion = nullptr,
            GeRectangle<int> const* srcRegion = nullptr);

} // namespace Qv
