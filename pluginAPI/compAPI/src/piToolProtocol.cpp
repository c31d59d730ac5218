#include "piToolProtocol.h"

#include "piNodeController.h"

namespace Qv {

PiToolProtocol::~PiToolProtocol() = default;

std::string PiToolProtocol::getPrimaryInput() const {
    return {};
}

bool PiToolProtocol::allowsAutomaticBackwardComp() const {
    return true;
}

std::string PiToolProtocol::getToolName() const {
    return makeToolName(getManufacturer(), getShortToolName());
}

std::string PiToolProtocol::makeToolName(std::string_view manufacturer, std::string_view shortName) {
    std::string name(manufacturer);
    name += '/';
    name += shortName;
    return name;
}

std::string PiToolProtocol::getImageGenerationCategory() {
    return "Image Generation";
}

std::string PiToolProtocol::getUtilityCategory() {
    return "Utility";
}

std::string PiToolProtocol::getTestCategory() {
    return "Test";
}

std::string PiToolProtocol::getVectorsCategory() {
    return "Vectors";
}

std::string PiToolProtocol::getUnlistedCategory() {
    return ".";
}

} // namespace Qv
