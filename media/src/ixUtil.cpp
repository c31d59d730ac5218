#include "ixUtil.h"

#include "imTileMemory.h"
#include "ixPixelTypes.h"

namespace Qv {

ImFormat IxUtil::ixToImPixelFormat(IxPixelFormat const& format) {
    return ixVisitDepth(format, "IxUtil::ixToImPixelFormat", [&](auto component) {
        using T = decltype(component);
        ImPixelFormat const depth = std::is_same_v<T, std::uint8_t> ? ImPixelFormat::UINT8
                                    : std::is_same_v<T, IxHalf>     ? ImPixelFormat::ECR
                                                                    : ImPixelFormat::HDR;
        return ImFormat(format.getComps(), depth);
    });
}

ImImageConst IxUtil::ixTileToImImageConst(IxTile const& tile) {
    return ImTileMemory::view(tile, "IxUtil::ixTileToImImageConst");
}

IxPixelFormat imToIxPixelFormat(ImFormat const& format, Rational const& aspect) {
    IxPixelFormat::Depth depth = IxPixelFormat::FLOAT32;
    switch (format.getPixelFormat().getDepth()) {
    case ImPixelFormat::UINT8:
        depth = IxPixelFormat::UINT8;
        break;
    case ImPixelFormat::ECR:
        depth = IxPixelFormat::FLOAT16;
        break;
    case ImPixelFormat::UINT16:
    case ImPixelFormat::HDR:
        break;
    }
    int const comps = format.getComps();
    return IxPixelFormat(comps == 1   ? IxPixelFormat::ALPHA
                         : comps == 3 ? IxPixelFormat::RGB
                                      : IxPixelFormat::RGBA,
                         depth, aspect);
}

} // namespace Qv
