// qv reader: the attributes of an image reader node of a composition, and
// its edits, each one undo step saved atomically.
#include "btReaderCommand.h"
#include "qvCommands.h"
#include "qvComposition.h"
#include "qvEntryPoint.h"

#include <memory>

namespace Qv {

namespace {

struct ReaderArguments {
    std::string composition;
    BtReaderCommandOptions options;
    std::vector<std::string> relocate;
};

int runReader(ReaderArguments const& arguments, std::ostream& out) {
    auto const command =
        findEntryPoint<int (*)(PiGraph&, BtReaderCommandOptions const&, std::ostream&)>("btReaderCommand");
    BtReaderCommandOptions options = arguments.options;
    if (arguments.relocate.size() == 2)
        options.relocate = std::pair(arguments.relocate[0], arguments.relocate[1]);
    if (!options.isEdit()) {
        RCShdPtr<PiGraph> const graph = QvComposition::load(arguments.composition);
        return command(*graph, options, out);
    }
    int status = 0;
    QvComposition::edit(arguments.composition, "Edit " + options.node,
                        [&](PiGraph& graph) { status = command(graph, options, out); });
    return status;
}

} // namespace

void addReaderCommand(CLI::App& app, QvAction& action) {
    auto arguments = std::make_shared<ReaderArguments>();
    BtReaderCommandOptions& options = arguments->options;
    CLI::App* command = app.add_subcommand(
        "reader", "Show the attributes of an Image Reader or Image Import node, or change them");
    command->add_option("COMP", arguments->composition, "The composition file")->required();
    command->add_option("NODE", options.node, "The reader node")->required();
    command->add_option("--path", options.path,
                        "A new sequence path (made absolute); prints the node's name");
    command->add_flag("--reload", options.reload, "Resolve the sequence path again against the disk");
    command->add_flag("--guess-bg", options.guessBackground,
                      "Guess the unpremultiply background colour from a frame's pixels");
    command->add_option("--frame", options.frame, "The frame the guess reads (default the mark in)");
    command->add_flag("--deps", options.dependencies, "Print the files the node reads, one a line");
    command->add_option("--relocate", arguments->relocate, "OLD NEW: follow footage moved from OLD to NEW")
        ->expected(2);
    command->add_option("--rate", options.rate, "The frame rate N/D");
    command->add_option("--pixel-ratio", options.pixelRatio, "The pixel ratio N:D");
    command->add_option("--depth", options.depth, "The depth of the output: UINT8, FLOAT16 or FLOAT32");
    command->add_option("--options", options.formatOptions, "The file format options");
    command->add_option("--unpremultiply", options.unpremultiply, "on or off");
    command->add_option("--bg", options.background, "The unpremultiply background colour R,G,B");
    command->add_option("--vectors", options.vectors, "none, absolute or normalized:MAX");
    command->callback([&action, arguments] {
        action = [arguments](std::ostream& out) { return runReader(*arguments, out); };
    });
}

} // namespace Qv
