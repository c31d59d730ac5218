#pragma once
// Reads the interface descriptions of tools, files named with the alias
// <ToolUiDir>, once each: the text is kept for the next caller.
#include <map>
#include <mutex>
#include <string>

namespace Qv {

class PiUserInterfaceServices {
public:
    static PiUserInterfaceServices& getInstance();

    virtual ~PiUserInterfaceServices();
    // The name of the alias of the descriptions' folder.
    virtual std::string getToolUiDirAlias() const;
    // The text of the description file. Throws RsEx::ExUnknownAlias,
    // OsFileEx::ExFileNotFound, ExIOError.
    virtual std::string getXmlDescription(std::string const& fileName);

protected:
    PiUserInterfaceServices() = default;

private:
    std::mutex _mutex;
    std::map<std::string, std::string> _texts;
};

} // namespace Qv
