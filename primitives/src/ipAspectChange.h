#pragma once
#include "geRectangle.h"
#include "ipFilters.h"
#include "ixReadGuard.h"
#include "ixWriteGuard.h"

#include <vector>

namespace Qv {

// Resamples the sources into the destination over the region (null: the
// whole destination) with the filter and its scales: destination pixel x
// reads the sources around (x + 0.5) / xScale, and the same in y. The sources
// should cover filter.getSourceRegion(region); where they do not, their fill
// colour (the first source's) stands in. Works in float whatever the formats;
// COMPLEX pixels throw IxEx::ExUnsupportedFormat.
void ipAspectChange(IxWriteGuard const& dst, std::vector<IxReadGuard> const& sources,
                    IpFilters::Filter const& filter, GeRectangle<int> const* region = nullptr);

} // namespace Qv
