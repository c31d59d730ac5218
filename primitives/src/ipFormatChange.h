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
} // namespace Qv
