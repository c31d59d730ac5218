#pragma once
// Names of tools that other parts of the host need to recognise, published by
// the packages that register those tools.
#include <string>

namespace Qv {

class PiCompositionUtils {
public:
    static void setOutputToolName(std::string const& name);
    static std::string getOutputToolName();
    static void setRenderedResultToolName(std::string const& name);
    static std::string getRenderedResultToolName();
    static void setImageLinkSuperToolName(std::string const& name);
    static std::string getImageLinkSuperToolName();
};

} // namespace Qv
