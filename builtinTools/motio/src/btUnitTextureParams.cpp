#include "btUnitTextureParams.h"

#include "assertions.h"

namespace Qv {

SdTextureParams BtUnitTextureParams::create(GeRectangle<int> const& region) {
    QV_ASSERT(!region.isEmpty());
    double const width = region.getWidth();
    double const height = region.getHeight();
    SdTextureParams params;
    params.textureTransform.linear = GeLinearMatrix2<double>::scaling(1.0 / width, 1.0 / height);
    params.textureTransform.translation = {(0.5 - region.x1) / width, (0.5 - region.y1) / height};
    params.filter = SdTextureParams::BILINEAR;
    params.clampX = false;
    params.clampY = false;
    return params;
}

} // namespace Qv
