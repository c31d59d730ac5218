// qv rename: a node of the top graph gets a new name. The expression package
// hears of it and rewrites every expression naming the old one.
#include "piEx.h"
#include "qvCommands.h"
#include "qvComposition.h"
#include "qvExpressions.h"

#include <memory>

namespace Qv {

namespace {

struct RenameOptions {
    std::string composition;
    std::string from;
    std::string to;
};

void rename(PiGraph& graph, RenameOptions const& options) {
    RCShdPtr<PiNode> node = graph.getNode(options.from);
    // Expression nodes are never shown, so they cannot be named either; a
    // boundary node takes its name from its group's socket.
    if (!node->isToolNode() || QvExpressions::isHidden(*node))
        throw PiEx::ExUnknownNode(__FILE__, __LINE__, "no node named '" + options.from + "'");
    graph.renameNode(node, options.to);
}

} // namespace

void addRenameCommand(CLI::App& app, QvAction& action) {
    auto options = std::make_shared<RenameOptions>();
    CLI::App* command =
        app.add_subcommand("rename", "Rename a node; the expressions naming it follow the new name");
    command->add_option("COMP", options->composition, "The composition file")->required();
    command->add_option("OLD", options->from, "The node's name")->required();
    command->add_option("NEW", options->to, "Its new name, not taken by another node")->required();
    command->callback([&action, options] {
        action = [options](std::ostream&) {
            QvComposition::edit(options->composition, "Rename " + options->from,
                                [&](PiGraph& graph) { rename(graph, *options); });
            return 0;
        };
    });
}

} // namespace Qv
