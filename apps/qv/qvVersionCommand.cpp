#include "inBuildInfo.h"
#include "qvCommands.h"

namespace Qv {

void addVersionCommand(CLI::App& app, QvAction& action) {
    CLI::App* command = app.add_subcommand("version", "Print the build record of the tool library, one "
                                                      "'name: value' line per field");
    command->callback([&action] {
        action = [](std::ostream& out) {
            for (InBuildInfo const* info : InBuildInfoUtil::getRegisteredInfos())
                for (auto const& [name, value] : info->describe())
                    out << name << ": " << value << '\n';
            return 0;
        };
    });
}

} // namespace Qv
