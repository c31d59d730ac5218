#pragma once
// The image library's types and errors as this system's.
#include "imPixelFormat.h"

#include <OpenImageIO/typedesc.h>
#include <string>

namespace Qv {

namespace FfOiioUtil {
OIIO::TypeDesc toTypeDesc(ImPixelFormat format);
// The depth closest to what the library stores: integers of up to 8 bits are
// UINT8, other integers UINT16, halves ECR, other floats HDR.
ImPixelFormat fromTypeDesc(OIIO::TypeDesc type);
// The pending error of the library (global, or of an input or output), with
// its lines joined; "unknown error" when it has none.
std::string takeError(std::string text);
} // namespace FfOiioUtil

} // namespace Qv
