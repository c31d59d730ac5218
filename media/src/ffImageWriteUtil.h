#pragma once
// A whole image to a file in one call, its format from the extension.
#include "ffFile.h"
#include "imImageConst.h"
#include "ixTile.h"

#include <string>

namespace Qv {

namespace FfImageWriteUtil {
// Writes the image in blocks of the format's preferred size and closes the
// file: the path holds the whole image or, after a failure, is left as it
// was. The stored depth is the image's, or the closest the format has;
// `options` are the format's options text. Throws FfIOEx.
void writeImage(OsFilePath const& path, ImImageConst const& image, std::string const& options = {});
// The same for a tile (FLOAT32 RGBA or any other format but COMPLEX).
void writeTile(OsFilePath const& path, IxTile const& tile, std::string const& options = {});
} // namespace FfImageWriteUtil

} // namespace Qv
