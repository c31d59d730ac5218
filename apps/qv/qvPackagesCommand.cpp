#include "inInitMgr.h"
#include "qvCommands.h"

namespace Qv {

void addPackagesCommand(CLI::App& app, QvAction& action) {
    CLI::App* command = app.add_subcommand(
        "packages",
        "Print the packages in initialise order, each with its dependencies in declaration order");
    command->callback([&action] {
        action = [](std::ostream& out) {
            InInitMgr& manager = InInitMgr::getInstance();
            for (InPackageInit const* package : manager.getInitializationOrder()) {
                out << package->getName() << ':';
                char const* separator = " ";
                for (std::type_index dependency : package->getDependencies()) {
                    out << separator << manager.getPackageName(dependency);
                    separator = ", ";
                }
                out << '\n';
            }
            return 0;
        };
    });
}

} // namespace Qv
