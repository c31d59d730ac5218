#pragma once
// File-side access to a tile being written, so that a file reader fills a
// tile in place.
#include "imWriteGuard.h"
#include "ixWriteGuard.h"

namespace Qv {

namespace IpWrapperUtil {
// Writes through to the guarded tile's pixels; the tile guard must outlive
// the result. A null guard for an empty tile; COMPLEX pixels throw
// IxEx::ExUnsupportedFormat.
ImWriteGuard convert(IxWriteGuard const& writeGuard);
} // namespace IpWrapperUtil

} // namespace Qv
