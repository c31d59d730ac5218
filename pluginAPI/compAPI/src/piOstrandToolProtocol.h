#pragma once
// The protocol of the tools of this product: product name, manufacturer and
// version are the product's own.
#include "piToolProtocolImp.h"

namespace Qv {

class PiOstrandToolProtocol : public PiToolProtocolImp {
public:
    PiOstrandToolProtocol(std::string toolName, std::string category, int schemaNb, std::string description,
                          ToolVisibility visibility, ToolStructure structure);

    static std::string getOstrandProductName();
    static std::string getOstrandManufacturer();
    static std::string getOstrandVersionString();
    // The registry key of one of the product's tools from its short name.
    static std::string getOstrandToolName(std::string_view name);
};

} // namespace Qv
