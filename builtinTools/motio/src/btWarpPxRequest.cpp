#include "btWarpPxRequest.h"

#include "assertions.h"

#include <algorithm>

namespace Qv {

BtWarpPxRequest::BtWarpPxRequest(int index, int count) : _index(index), _count(count) {
    QV_ASSERT(count > 0 && index >= 0 && index < count);
}

GeRectangle<int> BtWarpPxRequest::getStrip(GeRectangle<int> const& rgn, int index, int count) {
    QV_ASSERT(count > 0 && index >= 0 && index < count);
    int const height = std::max(rgn.getHeight(), 0);
    int const rows = (height + count - 1) / count;
    int const y1 = std::min(rgn.y1 + index * rows, rgn.y1 + height);
    int const y2 = std::min(y1 + rows, rgn.y1 + height);
    return {rgn.x1, rgn.x2, y1, y2};
}

} // namespace Qv
