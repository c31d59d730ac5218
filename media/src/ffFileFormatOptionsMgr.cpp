#include "ffFileFormatOptionsMgr.h"

#include "ffFileFormatMgr.h"
#include "ffIOEx.h"

namespace Qv {

FfFileFormatOptionsPtr FfFileFormatOptionsMgr::createOptions(std::string const& formatName,
                                                             std::string const& text) {
    FfFileFormatPtr const format = FfFileFormatMgr::getInstance().findFormat(formatName);
    if (format.isNull())
        throw FfIOEx::ExUnknownFormat(__FILE__, __LINE__, formatName);
    return FfFileFormatOptionsPtr(new FfFileFormatOptions(format->getName(), text));
}

} // namespace Qv
