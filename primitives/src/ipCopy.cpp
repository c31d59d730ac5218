#include "ipCopy.h"

#include "ipConvertRegion.h"
#include "ipRegionUtil.h"

namespace Qv {

void ipCopy(IxWriteGuard const& dst, IxReadGuard const& src, GeRectangle<int> const* dstRegion,
            GeRectangle<int> const* srcRegion) {
    GeRectangle<int> const from = srcRegion ? *srcRegion : src.getPixelRegion();
    GeRectangle<int> const to = dstRegion ? *dstRegion : from;
    int const dx = to.x1 - from.x1;
    int const dy = to.y1 - from.y1;
    // Only what srcRegion holds is copied, however large dstRegion is.
    GeRectangle<int> const rect = ipClipRegion(dst, &to).getIntersection(from.getTranslated(dx, dy));
    ipConvertRegion(dst, src, rect, dx, dy, "ipCopy");
}

} // namespace Qv
