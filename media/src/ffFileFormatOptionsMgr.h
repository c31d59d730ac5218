#pragma once
// Makes the format options of a file format from their text.
#include "ffFileFormatOptions.h"

#include <string>

namespace Qv {

namespace FfFileFormatOptionsMgr {
// Throws FfIOEx::ExUnknownFormat for a format name no format has, and
// FfIOEx::ExBadOptions for options the format refuses.
FfFileFormatOptionsPtr createOptions(std::string const& formatName, std::string const& text = {});
} // namespace FfFileFormatOptionsMgr

} // namespace Qv
