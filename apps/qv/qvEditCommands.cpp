// qv new, add, set and connect: editing a composition file from the shell.
#include "exBase.h"
#include "omCompositionFile.h"
#include "osFile.h"
#include "piEx.h"
#include "piSocketUtil.h"
#include "qvCommands.h"
#include "qvComposition.h"
#include "qvExpressions.h"

#include <iostream>
#include <memory>
#include <optional>

namespace Qv {

namespace {

struct EditOptions {
    std::string composition;
    std::string tool;
    std::string name;
    std::string target;
    std::string value;
    std::optional<double> time;
    std::optional<std::string> expression;
    bool noExpression = false;
    std::string from;
    bool force = false;
};

int createComposition(EditOptions const& options, std::ostream&) {
    if (!options.force && OsFile(options.composition).exists())
        throw ExBase(__FILE__, __LINE__, options.composition + " already exists (use --force to replace it)");
    RCShdPtr<PiGraph> graph(new PiGraph);
    OmCompositionFile::save(*graph, OsFilePath(options.composition));
    return 0;
}

int addNode(EditOptions const& options, std::ostream& out) {
    std::string name;
    QvComposition::edit(options.composition, "Add " + options.tool, [&](PiGraph& graph) {
        name = graph.createNode(options.tool, options.name)->getName();
    });
    out << name << '\n';
    return 0;
}

// An input's value (a keyframe with a time), or one channel of a colour,
// else a value the node stores.
void setValue(PiGraph& graph, EditOptions const& options) {
    auto [nodeName, socket] = PiSocketUtil::splitPath(options.target);
    RCShdPtr<PiNode> node = graph.getNode(nodeName);
    if (RCShdPtr<PiInput> input = PiSocketUtil::findNodeInput(*node, socket, false)) {
        PiValueInterfaceBase& values = input->getValueInterface();
        PiVariant value = PiVariantUtil::fromString(input->getType(), options.value);
        if (options.time)
            values.setKeyframeVariant(*options.time, value);
        else
            values.setConstantVariant(value);
        return;
    }
    if (RCShdPtr<PiValue> stored = node->getValue(socket)) {
        if (options.time)
            throw PiEx::ExValueRefused(__FILE__, __LINE__,
                                       "stored value " + options.target + " cannot have keyframes");
        stored->setData(PiVariantUtil::fromString(stored->getType(), options.value));
        return;
    }
    PiSocketUtil::findNodeInput(*node, socket, true);
}

// An expression's text that does not validate is still kept and saved, so
// that the user can mend it; the refusal then makes the status 1.
int setOrDetachExpression(EditOptions const& options) {
    QvExpressions::requireAvailable();
    std::string refusal;
    std::string const label =
        (options.expression ? "Set Expression " : "Remove Expression ") + options.target;
    QvComposition::edit(options.composition, label, [&](PiGraph& graph) {
        if (options.expression)
            refusal = QvExpressions::attach(graph, options.target, *options.expression);
        else
            QvExpressions::detach(graph, options.target);
    });
    if (refusal.empty())
        return 0;
    std::cerr << "qv: " << options.target << ": " << refusal << '\n';
    return 1;
}

void addCompositionOption(CLI::App* command, EditOptions& options) {
    command->add_option("COMP", options.composition, "The composition file")->required();
}

} // namespace

void addEditCommands(CLI::App& app, QvAction& action) {
    auto options = std::make_shared<EditOptions>();

    CLI::App* create = app.add_subcommand("new", "Create an empty composition file");
    addCompositionOption(create, *options);
    create->add_flag("--force", options->force, "Replace the file if it exists");
    create->callback([&action, options] {
        action = [options](std::ostream& out) { return createComposition(*options, out); };
    });

    CLI::App* add = app.add_subcommand(
        "add", "Add a node of a tool (full or short name, see qv tools) and print the node's name");
    addCompositionOption(add, *options);
    add->add_option("TOOL", options->tool, "The tool, such as \"Value Source\"")->required();
    add->add_option("NAME", options->name, "The node's name; by default the tool's name and a number");
    add->callback(
        [&action, options] { action = [options](std::ostream& out) { return addNode(*options, out); }; });

    CLI::App* set = app.add_subcommand(
        "set",
        "Set the value of an input (or a value the node stores), or the expression driving it; the input's "
        "policy may refuse a value");
    addCompositionOption(set, *options);
    set->add_option("NODE.INPUT", options->target,
                    "The input, such as V.Value, or a colour's channel, such as C.Color.Red")
        ->required();
    CLI::Option* value = set->add_option(
        "VALUE", options->value,
        "The value, read as the input's type: a colour is \"R G B\", a time FRAME@RATE or FRAME");
    CLI::Option* time = set->add_option("--time", options->time,
                                        "Set a keyframe at this time, in seconds, instead of the constant");
    CLI::Option* expression = set->add_option("--expr", options->expression,
                                              "Drive the input by this expression instead (a boolean, double "
                                              "or integer input), or change its text");
    CLI::Option* noExpression =
        set->add_flag("--no-expr", options->noExpression, "Take the expression off the input");
    for (CLI::Option* excluded : {value, time, noExpression})
        expression->excludes(excluded);
    for (CLI::Option* excluded : {value, time})
        noExpression->excludes(excluded);
    set->callback([&action, options, value, expression, noExpression] {
        if (expression->count() == 0 && noExpression->count() == 0 && value->count() == 0)
            throw CLI::RequiredError("VALUE");
        action = [options](std::ostream&) {
            if (options->expression || options->noExpression)
                return setOrDetachExpression(*options);
            QvComposition::edit(options->composition, "Set " + options->target,
                                [&](PiGraph& graph) { setValue(graph, *options); });
            return 0;
        };
    });

    CLI::App* connect = app.add_subcommand(
        "connect", "Connect an output to an input; an input that holds a value is then driven by the output");
    addCompositionOption(connect, *options);
    connect->add_option("NODE.OUTPUT", options->from, "The output, such as A.Output")->required();
    connect->add_option("NODE.INPUT", options->target, "The input, such as B.Value")->required();
    connect->callback([&action, options] {
        action = [options](std::ostream&) {
            QvComposition::edit(options->composition, "Connect " + options->target, [&](PiGraph& graph) {
                graph.connect(PiSocketUtil::findOutput(graph, options->from),
                              PiSocketUtil::findInput(graph, options->target));
            });
            return 0;
        };
    });
}

} // namespace Qv
