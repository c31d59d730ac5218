#pragma once
// The identity half of a tool protocol, from constructor arguments.
#include "piToolProtocol.h"

namespace Qv {

class PiToolProtocolImp : public virtual PiToolProtocol {
public:
    PiToolProtocolImp(std::string toolName, std::string category, std::string productName,
                      std::string manufacturer, std::string version, int schemaNb, std::string description,
                      ToolVisibility visibility, ToolStructure structure);

    std::string getProductName() const override { return _productName; }
    std::string getCategory() const override { return _category; }
    std::string getManufacturer() const override { return _manufacturer; }
    std::string getVersion() const override { return _version; }
    int getSchemaNb() const override { return _schemaNb; }
    std::string getDescription() const override { return _description; }
    bool isInternal() const override { return _visibility == TOOL_INTERNAL; }
    bool isSuperTool() const override { return _structure == SUPER_TOOL; }
    std::string getShortToolName() const override { return _toolName; }

private:
    std::string _toolName;
    std::string _category;
    std::string _productName;
    std::string _manufacturer;
    std::string _version;
    int _schemaNb;
    std::string _description;
    ToolVisibility _visibility;
    ToolStructure _structure;
};

} // namespace Qv
