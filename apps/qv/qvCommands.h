#pragma once
// The subcommands of qv. Each adds itself to the application and returns the
// action to run once the tool library is loaded and initialised.
#include <CLI/CLI.hpp>
#include <functional>
#include <ostream>

namespace Qv {

using QvAction = std::function<int(std::ostream& out)>;

void addVersionCommand(CLI::App& app, QvAction& action);
void addPackagesCommand(CLI::App& app, QvAction& action);
void addResolveCommand(CLI::App& app, QvAction& action);
void addExprCommand(CLI::App& app, QvAction& action);
// new, add, set, connect.
void addEditCommands(CLI::App& app, QvAction& action);
void addRenameCommand(CLI::App& app, QvAction& action);
void addToolsCommand(CLI::App& app, QvAction& action);
void addInfoCommand(CLI::App& app, QvAction& action);
void addEvalCommand(CLI::App& app, QvAction& action);
void addImageInfoCommand(CLI::App& app, QvAction& action);
void addSnapshotCommand(CLI::App& app, QvAction& action);
void addPixelCommand(CLI::App& app, QvAction& action);
void addSequenceCommand(CLI::App& app, QvAction& action);
void addReadCommand(CLI::App& app, QvAction& action);
void addMotioCommand(CLI::App& app, QvAction& action);
void addReaderCommand(CLI::App& app, QvAction& action);
void addImportCommands(CLI::App& app, QvAction& action);

} // namespace Qv
