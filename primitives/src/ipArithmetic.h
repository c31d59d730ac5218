#pragma once
// Per-component arithmetic of two images into a third, over the region (null:
// the whole destination). Where an operand has no pixel, its fill colour
// stands in. The destination may be one of the operands (through
// IxReadGuard(writeGuard)). COMPLEX pixels throw IxEx::ExUnsupportedFormat.
#include "geRectangle.h"
#include "ixReadGuard.h"
#include "ixWriteGuard.h"

namespace Qv {

// dst = a + b
void ipAdd(IxWriteGuard const& dst, IxReadGuard const& a, IxReadGuard const& b,
           GeRectangle<int> const* region = nullptr);
// dst = a - b
void ipSubtract(IxWriteGuard const& dst, IxReadGuard const& a, IxReadGuard const& b,
                GeRectangle<int> const* region = nullptr);

} // namespace Qv
