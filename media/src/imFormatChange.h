#pragma once
#include "geRectangle.h"
#include "imReadGuard.h"
#include "imWriteGuard.h"

namespace Qv {

// The source's pixels converted to the destination's format, pixel for pixel
// at the same coordinates, over the region (null: the whole destination)
// clipped to both images. Any depth and component count to any: integers
// clamp to [0, 1], a missing alpha is 1, a missing colour is grey or black
// as imLoadRgba says.
void imFormatChange(ImWriteGuard const& dst, ImReadGuard const& src,
                    GeRectangle<int> const* region = nullptr);

} // namespace Qv
