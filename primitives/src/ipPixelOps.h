#pragma once
// Pixel-wise conversions of whole images.
#include "coColor.h"
#include "coMotionVectorInfo.h"
#include "geRectangle.h"
#include "ixReadGuard.h"
#include "ixWriteGuard.h"

namespace Qv {

// Undoes a premultiplication over a background colour: a pixel stored as
// c = a * f + (1 - a) * background becomes f = (c - (1 - a) * background) / a,
// alpha unchanged; a fully transparent pixel becomes (0, 0, 0, 0). Over the
// region (null: the whole destination), from the source's pixels at the same
// place; source and destination may be the same tile. A one-component image
// is copied as it is.
void ipUnpremultiply(IxWriteGuard const& dst, IxReadGuard const& src, CoRgbColorTyped<float> const& colour,
                     GeRectangle<int> const* region = nullptr);
// In place over a region of the tile.
void ipUnpremultiply(IxWriteGuard const& guard, GeRectangle<int> const& region,
                     CoRgbColorTyped<float> const& colour);

// Stored vectors to a vector image in pixels: red and green become the
// horizontal and vertical displacement as `info` says, blue 0, alpha 1.
// Asserts "info.isValid()".
void ipConvertMotionVectors(IxWriteGuard const& dst, IxReadGuard const& src, CoMotionVectorInfo const& info,
                            GeRectangle<int> const* region = nullptr);

} // namespace Qv
