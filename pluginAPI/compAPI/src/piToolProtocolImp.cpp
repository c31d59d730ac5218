#include "piToolProtocolImp.h"

namespace Qv {

PiToolProtocolImp::PiToolProtocolImp(std::string toolName, std::string category, std::string productName,
                                     std::string manufacturer, std::string version, int schemaNb,
                                     std::string description, ToolVisibility visibility,
                                     ToolStructure structure)
    : _toolName(std::move(toolName)), _category(std::move(category)), _productName(std::move(productName)),
      _manufacturer(std::move(manufacturer)), _version(std::move(version)), _schemaNb(schemaNb),
      _description(std::move(description)), _visibility(visibility), _structure(structure) {}

} // namespace Qv
