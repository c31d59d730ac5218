#include "btReaderSettingsText.h"

#include "exBase.h"

#include <fmt/format.h>
#include <sstream>

namespace Qv::BtReaderSettingsText {

IxPixelFormat::Depth parseDepth(std::string const& text) {
    if (text == "UINT8")
        return IxPixelFormat::UINT8;
    if (text == "FLOAT16")
        return IxPixelFormat::FLOAT16;
    if (text == "FLOAT32")
        return IxPixelFormat::FLOAT32;
    throw ExBase(__FILE__, __LINE__, "depth \"" + text + "\" is not one of UINT8, FLOAT16, FLOAT32");
}

CoMotionVectorInfo parseVectors(std::string const& text) {
    CoMotionVectorInfo info;
    if (text.empty() || text == "none")
        return info;
    info.status = CoMotionVectorInfo::HAS_VECTORS;
    if (text == "absolute")
        return info;
    std::string const prefix = "normalized:";
    if (text.rfind(prefix, 0) == 0) {
        info.type = CoMotionVectorInfo::NORMALIZED;
        try {
            std::size_t used = 0;
            info.maxDisplacement = std::stof(text.substr(prefix.size()), &used);
            if (used == text.size() - prefix.size() && info.maxDisplacement > 0.0f)
                return info;
        } catch (std::exception const&) {
        }
    }
    throw ExBase(__FILE__, __LINE__,
                 "vectors \"" + text + "\" are not \"absolute\" or \"normalized:MAX\" with MAX above 0");
}

std::string depthName(unsigned depth) {
    switch (depth) {
    case IxPixelFormat::UINT8:
        return "UINT8";
    case IxPixelFormat::FLOAT32:
        return "FLOAT32";
    default:
        return "FLOAT16";
    }
}

CoRgbColorTyped<float> parseColor(std::string const& text) {
    float components[3] = {};
    std::stringstream stream(text);
    std::string item;
    int count = 0;
    bool good = true;
    while (good && std::getline(stream, item, ',')) {
        try {
            std::size_t used = 0;
            float const value = std::stof(item, &used);
            good = used == item.size() && count < 3;
            if (good)
                components[count++] = value;
        } catch (std::exception const&) {
            good = false;
        }
    }
    if (!good || count != 3)
        throw ExBase(__FILE__, __LINE__, "colour \"" + text + "\" is not three numbers R,G,B");
    return {components[0], components[1], components[2]};
}

std::string colorText(CoRgbColorTyped<float> const& colour) {
    return fmt::format("{} {} {}", colour.r, colour.g, colour.b);
}

} // namespace Qv::BtReaderSettingsText
