// qv info: what a composition file holds. The nodes of expressions are not
// shown as such: the input an expression drives is shown with its text.
#include "piColorProcNode.h"
#include "piGraph.h"
#include "qvCommands.h"
#include "qvComposition.h"
#include "qvExpressions.h"

#include <memory>

namespace Qv {

namespace {

std::string describeValue(PiValueInterfaceBase const& value) {
    if (!value.isAnimated())
        return PiVariantUtil::toString(value.getConstantVariant());
    std::string text = "keyframes";
    char const* separator = " ";
    for (PiKeyframe const& key : value.getKeyframeVariants()) {
        text += separator + PiVariantUtil::toString(key.time) + ": " + PiVariantUtil::toString(key.value);
        separator = ", ";
    }
    return text;
}

void printGraph(PiGraph& graph, std::string const& prefix, std::ostream& out) {
    for (RCShdPtr<PiNode> const& node : graph.getNodes()) {
        if (QvExpressions::isHidden(*node))
            continue;
        std::string name = prefix + node->getName();
        out << "node " << name << ": " << node->getToolName() << ", schema " << node->getSchemaNb()
            << (node->getTool() ? "" : " (tool not available)") << '\n';
        for (RCShdPtr<PiInput> const& input : node->getInputs()) {
            if (!input->hasValueNode())
                continue;
            std::string const full = name + '.' + input->getName();
            if (PiExpressionInterface const* expression = QvExpressions::find(input)) {
                out << "  " << full << " = " << QvExpressions::describe(*expression) << '\n';
                continue;
            }
            // An animated colour is told channel by channel, each keeping its own keyframes.
            if (input->isStructured() && input->getValueInterface().isAnimated())
                for (std::string const& channel : PiColorProcNode::getChannelNames())
                    out << "  " << full << '.' << channel << " = "
                        << describeValue(input->getChannel(channel)->getValueInterface()) << '\n';
            else
                out << "  " << full << " = " << describeValue(input->getValueInterface()) << '\n';
        }
        for (RCShdPtr<PiValue> const& value : node->getValues())
            out << "  " << name << '.' << value->getName() << " = "
                << PiVariantUtil::toString(value->getData()) << " (stored)\n";
    }
    // An expression's connections (its result to the input it drives, the
    // attributes it reads to its inputs) are told by its text.
    auto connections = [&](RCShdPtr<PiNode> const& node) {
        if (QvExpressions::isHidden(*node))
            return;
        for (RCShdPtr<PiInput> const& input : node->getInputs()) {
            std::vector<RCShdPtr<PiInput>> targets{input};
            if (input->isStructured() && input->hasValueNode())
                for (std::string const& channel : PiColorProcNode::getChannelNames())
                    targets.push_back(input->getChannel(channel));
            for (RCShdPtr<PiInput> const& target : targets) {
                RCShdPtr<PiInput> fed =
                    target->hasValueNode() ? target->getValueNode()->getInput(PiNode::getValueNodeInputName())
                                           : target;
                for (RCShdPtr<PiOutput> const& output : fed->getConnectedOutputs())
                    if (!QvExpressions::isHidden(*output->getNode()))
                        out << "connection " << prefix << output->getFullName() << " -> " << prefix
                            << target->getFullName() << '\n';
            }
        }
    };
    for (RCShdPtr<PiNode> const& node : graph.getNodes())
        connections(node);
    for (RCShdPtr<PiNode> const& node : graph.getBoundaryNodes())
        connections(node);
    for (RCShdPtr<PiNode> const& node : graph.getNodes())
        if (node->getInnerGraph())
            printGraph(*node->getInnerGraph(), prefix + node->getName() + ".", out);
}

} // namespace

void addInfoCommand(CLI::App& app, QvAction& action) {
    auto composition = std::make_shared<std::string>();
    CLI::App* command = app.add_subcommand(
        "info", "Print the nodes of a composition (name, tool, schema), their values and the connections");
    command->add_option("COMP", *composition, "The composition file")->required();
    command->callback([&action, composition] {
        action = [composition](std::ostream& out) {
            RCShdPtr<PiGraph> graph = QvComposition::load(*composition);
            printGraph(*graph, "", out);
            return 0;
        };
    });
}

} // namespace Qv
