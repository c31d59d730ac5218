#include "ffOiioUtil.h"

#include <algorithm>

namespace Qv {

OIIO::TypeDesc FfOiioUtil::toTypeDesc(ImPixelFormat format) {
    switch (format.getDepth()) {
    case ImPixelFormat::UINT8:
        return OIIO::TypeDesc::UINT8;
    case ImPixelFormat::UINT16:
        return OIIO::TypeDesc::UINT16;
    case ImPixelFormat::ECR:
        return OIIO::TypeDesc::HALF;
    case ImPixelFormat::HDR:
        break;
    }
    return OIIO::TypeDesc::FLOAT;
}

ImPixelFormat FfOiioUtil::fromTypeDesc(OIIO::TypeDesc type) {
    if (type.basetype == OIIO::TypeDesc::HALF)
        return ImPixelFormat::ECR;
    if (type.is_floating_point())
        return ImPixelFormat::HDR;
    return type.size() <= 1 ? ImPixelFormat::UINT8 : ImPixelFormat::UINT16;
}

std::string FfOiioUtil::takeError(std::string text) {
    while (!text.empty() && (text.back() == '\n' || text.back() == ' '))
        text.pop_back();
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text.empty() ? "unknown error" : text;
}

} // namespace Qv
