#include "imFormatChange.h"

#include "imComponent.h"
#include "ipConvertRow.h"

namespace Qv {

namespace {

template <int NS, class S, int ND, class D>
void convertRow(S const* src, D* dst, int count) {
    if constexpr (NS == ND || (NS != 2 && ND != 2)) {
        ipConvertRow<NS, S, ND, D>(src, dst, count);
    } else {
        for (int i = 0; i < count; ++i)
            imStoreRgba<ND>(dst + i * ND, imLoadRgba<NS>(src + i * NS));
    }
}

} // namespace

void imFormatChange(ImWriteGuard const& dst, ImReadGuard const& src, GeRectangle<int> const* region) {
    GeRectangle<int> rect = dst.getRect().getIntersection(src.getRect());
    if (region)
        rect = rect.getIntersection(*region);
    if (rect.isEmpty())
        return;
    imVisitFormat(src.getFormat(), [&](auto srcComponent, auto srcComps) {
        imVisitFormat(dst.getFormat(), [&](auto dstComponent, auto dstComps) {
            using S = decltype(srcComponent);
            using D = decltype(dstComponent);
            constexpr int NS = srcComps();
            constexpr int ND = dstComps();
            int const sx = rect.x1 - src.getRect().x1;
            int const dx = rect.x1 - dst.getRect().x1;
            for (int y = rect.y1; y < rect.y2; ++y)
                convertRow<NS, S, ND, D>(src.getLineAs<S>(y) + sx * NS, dst.getLineAs<D>(y) + dx * ND,
                                         rect.getWidth());
        });
    });
}

} // namespace Qv
