// qv tools: the registered tools.
#include "piToolRegistry.h"
#include "qvCommands.h"

namespace Qv {

void addToolsCommand(CLI::App& app, QvAction& action) {
    CLI::App* command = app.add_subcommand(
        "tools", "Print every registered tool, one a line: full name, category, schema number, listed or "
                 "internal, separated by tabs");
    command->callback([&action] {
        action = [](std::ostream& out) {
            for (RCShdPtr<PiTool const> const& tool : PiToolRegistry::getInstance().getTools()) {
                PiToolProtocol const& protocol = tool->getProtocol();
                out << tool->getName() << '\t' << protocol.getCategory() << '\t' << protocol.getSchemaNb()
                    << '\t' << (tool->isListed() ? "listed" : "internal") << '\n';
            }
            return 0;
        };
    });
}

} // namespace Qv
