#pragma once
// What an image header may claim before the reader allocates anything for
// it: sides of at most MAX_SIDE pixels and at most MAX_CHANNELS channels (no
// image this system makes or meets comes near; a damaged header claims
// hundreds of millions), and pixels, or one tile, no heavier than the
// format's maxRatio times the file, or 32 times when the file says it is not
// compressed: the file could not hold them. The pixels' origin lies at most
// MAX_ORIGIN pixels from (0, 0): the library adds it to row and column
// numbers in plain ints, and a damaged DPX placing its rows two billion lines
// down made it write outside the caller's buffer.
#include "ffImageFormatTraits.h"
#include "osFilePath.h"

#include <OpenImageIO/oiioversion.h>
#include <cstdint>

OIIO_NAMESPACE_BEGIN
class ImageSpec;
OIIO_NAMESPACE_END

namespace Qv {

namespace FfHeaderLimits {
inline constexpr int MAX_SIDE = 1 << 20;
inline constexpr int MAX_CHANNELS = 1024;
inline constexpr int MAX_ORIGIN = 1 << 24;
// Throws FfIOEx::ExOpNotSupported for a side or a channel count over the
// limits, FfIOEx::ExCorruptFile for pixels the file cannot hold or an origin
// beyond MAX_ORIGIN.
void check(OsFilePath const& path, std::uintmax_t fileSize, FfImageFormatTraits const& traits,
           OIIO::ImageSpec const& spec);
// The side and channel part of check, for a header read before the library
// sees it (a library that sizes its buffers by the header at open).
void checkSides(OsFilePath const& path, long long width, long long height, long long channels);
} // namespace FfHeaderLimits

} // namespace Qv
