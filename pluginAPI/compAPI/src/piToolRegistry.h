#pragma once
// Every tool of the process, by full name. Packages register their tools in
// their initialise step; the registry owns them to the end of the process.
#include "piTool.h"
#include "rcShdPtr.h"

#include <map>
#include <mutex>
#include <vector>

namespace Qv {

class PiToolRegistry {
public:
    static PiToolRegistry& getInstance();

    virtual ~PiToolRegistry();

    // Takes ownership. A tool registered again under the same name (a
    // package initialised a second time) replaces the earlier one; nodes of
    // the earlier one keep it alive.
    virtual void registerTool(OPtr<PiToolProtocol> protocol);
    // Forgets the tool; nodes of it keep it alive. False when there was none.
    virtual bool unregisterTool(std::string const& name);
    // By full name; null when no tool has that name.
    virtual RCShdPtr<PiTool const> getTool(std::string const& name) const;

    // The full name, or failing that the short name of a tool of any
    // manufacturer: how a user names a tool. Null when none matches.
    RCShdPtr<PiTool const> findTool(std::string const& name) const;
    // Every tool, by full name.
    std::vector<RCShdPtr<PiTool const>> getTools() const;
    // The categories of the listed tools, sorted.
    std::vector<std::string> getCategories() const;
    // The listed tools of a category, by full name.
    std::vector<RCShdPtr<PiTool const>> getListedTools(std::string const& category) const;

protected:
    PiToolRegistry() = default;

private:
    mutable std::mutex _mutex;
    std::map<std::string, RCShdPtr<PiTool const>> _tools;
};

} // namespace Qv
