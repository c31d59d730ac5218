#pragma once
#include "geRectangle.h"
#include "ixReadGuard.h"
#include "ixWriteGuard.h"

namespace Qv {

// The source's pixels of srcRegion (null: all of them) put at dstRegion's
// corner (null: where they are), over dstRegion narrowed to the destination;
// converted when the formats differ, the source's fill colour where it has
// no pixel.
void ipCopy(IxWriteGuard const& dst, IxReadGuard const& src, GeRectangle<int> const* dstRegion = nullptr,
            GeRectangle<int> const* srcRegion = nullptr);

} // namespace Qv
