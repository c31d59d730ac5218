#pragma once
// The kernel of copies and format changes: destination pixel (x, y) of rect
// takes source pixel (x - dx, y - dy) converted to the destination's format,
// or the source's fill colour where the source has no pixel. COMPLEX pixels
// throw IxEx::ExUnsupportedFormat naming `operation`, before anything is written.
#include "geRectangle.h"
#include "ixReadGuard.h"
#include "ixWriteGuard.h"

namespace Qv {

void ipConvertRegion(IxWriteGuard const& dst, IxReadGuard const& src, GeRectangle<int> const& rect, int dx,
                     int dy, char const* operation);

} // namespace Qv
