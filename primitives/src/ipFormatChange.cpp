#include "ipFormatChange.h"

#include "ipConvertRegion.h"
#include "ipRegionUtil.h"

namespace Qv {

void ipFormatChange(IxWriteGuard const& dst, IxReadGuard const& src, GeRectangle<int> const* region) {
    ipConvertRegion(dst, src, ipClipRegion(dst, region), 0, 0, "ipFormatChange");
}

} // namespace Qv
