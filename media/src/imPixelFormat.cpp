#include "imPixelFormat.h"

#include "assertions.h"

namespace Qv {

int ImPixelFormat::getBitsPerComp() const {
    switch (_depth) {
    case UINT8:
        return 8;
    case UINT16:
    case ECR:
        return 16;
    case HDR:
        break;
    }
    return 32;
}

ImPixelFormat ImPixelFormat::fromBits(int bits) {
    QV_ASSERT(bits == 8 || bits == 16 || bits == 32);
    return bits == 8 ? UINT8 : bits == 16 ? UINT16 : HDR;
}

std::string ImPixelFormat::dump() const {
    switch (_depth) {
    case UINT8:
        return "UINT8";
    case UINT16:
        return "UINT16";
    case ECR:
        return "ECR";
    case HDR:
        break;
    }
    return "HDR";
}

} // namespace Qv
