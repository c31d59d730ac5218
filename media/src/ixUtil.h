#pragma once
// Between tiles and file-side images.
#include "imFormat.h"
#include "imImageConst.h"
#include "ixPixelFormat.h"
#include "ixTile.h"
#include "rational.h"

namespace Qv {

namespace IxUtil {
// UINT8, FLOAT16 and FLOAT32 become UINT8, ECR and HDR with the same count of
// components. COMPLEX throws IxEx::ExUnsupportedFormat.
ImFormat ixToImPixelFormat(IxPixelFormat const& format);
// A view of the tile's pixels, sharing them; a null image for an empty tile.
ImImageConst ixTileToImImageConst(IxTile const& tile);
} // namespace IxUtil

// UINT8, ECR and HDR become UINT8, FLOAT16 and FLOAT32; UINT16 becomes FLOAT32,
// which holds it exactly. Two components (grey and alpha) become RGBA.
IxPixelFormat imToIxPixelFormat(ImFormat const& format, Rational const& aspect = Rational(1, 1));

} // namespace Qv
