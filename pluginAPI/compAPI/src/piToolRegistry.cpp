#include "piToolRegistry.h"

#include "assertions.h"

#include <set>

namespace Qv {

PiToolRegistry& PiToolRegistry::getInstance() {
    // Never destroyed: static destructors of the tool library may still ask.
    static PiToolRegistry* const instance = new PiToolRegistry;
    return *instance;
}

PiToolRegistry::~PiToolRegistry() = default;

void PiToolRegistry::registerTool(OPtr<PiToolProtocol> protocol) {
    QV_ASSERT(protocol != nullptr);
    RCShdPtr<PiTool const> tool(new PiTool(std::move(protocol)));
    std::lock_guard lock(_mutex);
    _tools[tool->getName()] = tool;
}

bool PiToolRegistry::unregisterTool(std::string const& name) {
    std::lock_guard lock(_mutex);
    return _tools.erase(name) > 0;
}

RCShdPtr<PiTool const> PiToolRegistry::getTool(std::string const& name) const {
    std::lock_guard lock(_mutex);
    auto it = _tools.find(name);
    return it == _tools.end() ? RCShdPtr<PiTool const>() : it->second;
}

RCShdPtr<PiTool const> PiToolRegistry::findTool(std::string const& name) const {
    if (RCShdPtr<PiTool const> tool = getTool(name))
        return tool;
    std::lock_guard lock(_mutex);
    for (auto const& [key, tool] : _tools)
        if (tool->getShortName() == name)
            return tool;
    return {};
}

std::vector<RCShdPtr<PiTool const>> PiToolRegistry::getTools() const {
    std::lock_guard lock(_mutex);
    std::vector<RCShdPtr<PiTool const>> tools;
    for (auto const& entry : _tools)
        tools.push_back(entry.second);
    return tools;
}

std::vector<std::string> PiToolRegistry::getCategories() const {
    std::set<std::string> categories;
    for (auto const& tool : getTools())
        if (tool->isListed())
            categories.insert(tool->getProtocol().getCategory());
    return {categories.begin(), categories.end()};
}

std::vector<RCShdPtr<PiTool const>> PiToolRegistry::getListedTools(std::string const& category) const {
    std::vector<RCShdPtr<PiTool const>> tools;
    for (auto const& tool : getTools())
        if (tool->isListed() && tool->getProtocol().getCategory() == category)
            tools.push_back(tool);
    return tools;
}

} // namespace Qv
