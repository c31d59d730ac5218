#include "ipWrapperUtil.h"

#include "imTileMemory.h"

namespace Qv {

ImWriteGuard IpWrapperUtil::convert(IxWriteGuard const& writeGuard) {
    ImImage const image = ImTileMemory::view(writeGuard.getTile(), "IpWrapperUtil::convert");
    return image.isNull() ? ImWriteGuard() : ImWriteGuard(image);
}

} // namespace Qv
