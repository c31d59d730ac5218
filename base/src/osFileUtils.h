#pragma once
#include "osFilePath.h"

#include <string_view>

namespace Qv {

namespace OsFileUtils {

// A path in `directory` that names no entry at this moment: prefix, a part
// unique to this process, call and a random draw (so hosts that share a
// network directory do not collide), then "." and the extension when one is
// given. The file is not created. Throws OsFileEx::ExInvalidPath when the
// directory does not exist or the prefix or extension holds a separator.
OsFilePath createUniqueFileName(OsFilePath const& directory, std::string_view prefix,
                                std::string_view extension);

} // namespace OsFileUtils

} // namespace Qv
