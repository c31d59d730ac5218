#pragma once
// The size a file's header promises, for formats whose header places every
// pixel at a fixed offset and whose library either reads a short file
// without a word (ZFILE fills the rest with zeros) or says no more than
// "read error" (SGI, ICO, PNM) or "couldn't decode" (WebP); and for EXR, the
// end of its header and offset table, since its library allocates whatever
// an attribute's size claims before finding the file too short. A file that
// holds less is cut short, whatever the library would make of it. Unknown
// for other formats and for layouts the header does not fix: run-length
// encoded SGI, compressed ZFILE, text PNM.
#include "osFilePath.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace Qv {

namespace FfPromisedSize {
// `libraryName` is the image library's plug-in name ("sgi").
std::optional<std::uintmax_t> of(OsFilePath const& path, std::string_view libraryName);
} // namespace FfPromisedSize

} // namespace Qv
