#include "ipConvertRegion.h"

#include "ipConvertRow.h"
#include "ipRegionUtil.h"

#include <algorithm>

namespace Qv {

void ipConvertRegion(IxWriteGuard const& dst, IxReadGuard const& src, GeRectangle<int> const& rect, int dx,
                     int dy, char const* operation) {
    if (rect.isEmpty())
        return;
    GeRectangle<int> const from = src.getPixelRegion().getTranslated(dx, dy);
    ipVisitFormat(src.getPixelFormat(), operation, [&](auto srcComponent, auto srcComps) {
        ipVisitFormat(dst.getPixelFormat(), operation, [&](auto dstComponent, auto dstComps) {
            using S = decltype(srcComponent);
            using D = decltype(dstComponent);
            constexpr int NS = srcComps();
            constexpr int ND = dstComps();
            IpPixel<ND, D> const fill(src.getFillColor());
            // Columns that have a source pixel: the same on every row.
            int const x1 = std::clamp(from.x1, rect.x1, rect.x2);
            int const x2 = std::clamp(from.x2, x1, rect.x2);
            for (int y = rect.y1; y < rect.y2; ++y) {
                D* out = ipPixelsAt<D, ND>(dst, rect.x1, y);
                if (y < from.y1 || y >= from.y2 || x1 == x2) {
                    ipFillRun(out, fill, rect.getWidth());
                    continue;
                }
                ipFillRun(out, fill, x1 - rect.x1);
                ipConvertRow<NS, S, ND, D>(ipPixelsAt<S, NS>(src, x1 - dx, y - dy), out + (x1 - rect.x1) * ND,
                                           x2 - x1);
                ipFillRun(out + (x2 - rect.x1) * ND, fill, rect.x2 - x2);
            }
        });
    });
}

} // namespace Qv
