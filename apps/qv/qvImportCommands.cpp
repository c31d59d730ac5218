// qv import and qv footage: footage as a node of a composition, or as
// entries of a project.
#include "btImportCommands.h"
#include "qvCommands.h"
#include "qvComposition.h"
#include "qvEntryPoint.h"

#include <memory>

namespace Qv {

namespace {

void addImportOptions(CLI::App& command, BtImportCommandOptions& options) {
    command.add_option("--rate", options.rate, "The frame rate N/D (default guessed from the size)");
    command.add_option("--pixel-ratio", options.pixelRatio,
                       "The pixel ratio N:D (default guessed from the size)");
    command.add_option("--depth", options.depth, "ECR (half floats) or HDR (floats); default the files'");
}

struct ImportArguments {
    std::string composition;
    std::string path;
    BtImportCommandOptions options;
};

} // namespace

void addImportCommands(CLI::App& app, QvAction& action) {
    auto import = std::make_shared<ImportArguments>();
    CLI::App* command = app.add_subcommand(
        "import", "Add an Image Import node over an image sequence to a composition and print its name");
    command->add_option("COMP", import->composition, "The composition file")->required();
    command->add_option("PATH", import->path, "The sequence path, or one of its files")->required();
    command->add_option("NAME", import->options.name, "The node's name; by default the sequence's");
    addImportOptions(*command, import->options);
    command->callback([&action, import] {
        action = [import](std::ostream& out) {
            auto const run =
                findEntryPoint<int (*)(PiGraph&, std::string const&, BtImportCommandOptions const&,
                                       std::ostream&)>("btImportCommand");
            int status = 0;
            QvComposition::edit(import->composition, "Import " + import->path, [&](PiGraph& graph) {
                status = run(graph, import->path, import->options, out);
            });
            return status;
        };
    });

    auto footage = std::make_shared<BtFootageCommandOptions>();
    command = app.add_subcommand("footage", "Import image sequences into a project, one entry each");
    command->add_option("PROJECT", footage->project, "The project folder (made a project when it is not)")
        ->required();
    command->add_option("PATH", footage->paths, "Sequence paths, or one file of each sequence")->required();
    command->add_option("--folder", footage->folder, "The project folder to import into (default Footage)");
    command->add_option("--name", footage->import.name,
                        "The entry's name, for one path (default the sequence's)");
    addImportOptions(*command, footage->import);
    command->callback([&action, footage] {
        action = [footage](std::ostream& out) {
            auto const run =
                findEntryPoint<int (*)(BtFootageCommandOptions const&, std::ostream&)>("btFootageCommand");
            return run(*footage, out);
        };
    });
}

} // namespace Qv
