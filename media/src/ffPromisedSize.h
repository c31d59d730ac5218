#pragma once
// The size a file's header promises, for formats whose header places every
// pixel at a fixed offset and whose library either reads a short file
// without a word (ZFILE fills the rest with zeros) or says no more than
// "read error" (SGI, ICO, PNM) or "couldn't decode" (WebP); and for EXR and
// DPX, the end of their headers (and EXR's offset table), since their library
// allocates whatever a header's sizes claim before finding the file too
// short. A file that
// holds less is cut short, whatever the library would make of it. Unknown
// for other formats and for layouts the header does not fix: run-length
// encoded SGI, compressed ZFILE, text PNM.
#include "osFilePath.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace Qv {

namespace FfPromisedSize {
// `libraryName` is the image library's plug-in name ("sgi"). An EXR header
// whose data window exceeds FfHeaderLimits' sides throws as its check does.
std::optional<std::uintmax_t> of(OsFilePath const& path, std::string_view libraryName);
} // namespace FfPromisedSize

} // namespace Qv
