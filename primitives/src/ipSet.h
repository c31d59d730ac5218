#pragma once
#include "coColor.h"
#include "geRectangle.h"
#include "ixWriteGuard.h"

namespace Qv {

// Every pixel of the region (null: the whole tile) set to the colour, in the
// tile's format. Throws IxEx::ExUnsupportedFormat for COMPLEX pixels.
void ipSet(IxWriteGuard const& guard, CoRgbaColorTyped<float> const& colour,
           GeRectangle<int> const* region = nullptr);

} // namespace Qv
