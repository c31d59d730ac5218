#include "piOstrandToolProtocol.h"

namespace Qv {

PiOstrandToolProtocol::PiOstrandToolProtocol(std::string toolName, std::string category, int schemaNb,
                                             std::string description, ToolVisibility visibility,
                                             ToolStructure structure)
    : PiToolProtocolImp(std::move(toolName), std::move(category), getOstrandProductName(),
                        getOstrandManufacturer(), getOstrandVersionString(), schemaNb, std::move(description),
                        visibility, structure) {}

std::string PiOstrandToolProtocol::getOstrandProductName() {
    return "Brumo";
}

std::string PiOstrandToolProtocol::getOstrandManufacturer() {
    return "Ostrand";
}

std::string PiOstrandToolProtocol::getOstrandVersionString() {
    return "8.0";
}

std::string PiOstrandToolProtocol::getOstrandToolName(std::string_view name) {
    return makeToolName(getOstrandManufacturer(), name);
}

} // namespace Qv
