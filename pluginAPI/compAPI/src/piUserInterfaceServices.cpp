#include "piUserInterfaceServices.h"

#include "osFile.h"
#include "rsResources.h"

namespace Qv {

PiUserInterfaceServices& PiUserInterfaceServices::getInstance() {
    static PiUserInterfaceServices* const instance = new PiUserInterfaceServices;
    return *instance;
}

PiUserInterfaceServices::~PiUserInterfaceServices() = default;

std::string PiUserInterfaceServices::getToolUiDirAlias() const {
    return "<ToolUiDir>";
}

std::string PiUserInterfaceServices::getXmlDescription(std::string const& fileName) {
    std::lock_guard lock(_mutex);
    auto it = _texts.find(fileName);
    if (it != _texts.end())
        return it->second;
    std::string text = OsFile(OsFilePath(RsResources::expandAliases(fileName))).readText();
    _texts.emplace(fileName, text);
    return text;
}

} // namespace Qv
