#pragma once
// How the motion stages read an image at displaced positions: bilinear, the
// image's fill colour outside its pixels, and a transform from the pixel
// positions of `region` to unit coordinates, u = (x + 0.5 - x1) / width,
// v = (y + 0.5 - y1) / height, so that a lookup at a whole (x, y) gives
// pixel (x, y) exactly.
#include "geRectangle.h"
#include "sdTextureParams.h"

namespace Qv {

class BtUnitTextureParams {
public:
    // `region` must not be empty.
    static SdTextureParams create(GeRectangle<int> const& region);
};

} // namespace Qv
