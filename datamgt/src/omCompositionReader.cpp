// Reading compositions. Each failure names the file and the line of the
// element where it was found; the first one ends the reading and nothing of
// the half-read graph is kept.
#include "omCompositionFile.h"
#include "omEx.h"
#include "omGraphUtil.h"
#include "osFileEx.h"
#include "piColorProcNode.h"
#include "piEx.h"
#include "piExpressionServices.h"
#include "piSocketUtil.h"
#include "piToolRegistry.h"
#include "piUndoGuard.h"
#include "xmlEx.h"

#include <fmt/format.h>
#include <set>

namespace Qv {

namespace {

// A failure at an element, before the file's name is known to say.
class ElementError : public std::runtime_error {
public:
    ElementError(int line, std::string const& what) : std::runtime_error(what), _line(line) {}
    int getLine() const { return _line; }

private:
    int _line;
};

[[noreturn]] void fail(XmlElement const& element, std::string const& what) {
    throw ElementError(element.getLine(), what);
}

// Runs `read`, turning what the XML and graph layers throw into a failure
// at `element`.
template <class Read>
auto at(XmlElement const& element, Read read) -> decltype(read()) {
    try {
        return read();
    } catch (XmlEx::ExXmlError const& error) {
        fail(element, error.getReason());
    } catch (PiEx::ExGraphError const& error) {
        fail(element, error.getReason());
    }
}

PiSocketType readSocketType(XmlElement const& element) {
    std::string const& text =
        at(element, [&]() -> std::string const& { return element.getAttribute("type"); });
    std::optional<PiSocketType> type = PiSocketType::stringToType(text);
    if (!type)
        fail(element, fmt::format("unknown socket type '{}'", text));
    return *type;
}

// A constant and keyframes, as children of `element`; nothing when it has
// neither. `what` names the input (or its channel) in messages.
std::optional<PiNodeSpec::Curve> readCurve(XmlElement const& element, PiSocketType type,
                                           std::string const& what) {
    std::optional<PiNodeSpec::Curve> curve;
    std::set<double> times;
    for (XmlElement const& child : element.getChildren()) {
        auto value = [&] {
            return at(child, [&] { return PiVariantUtil::fromString(type, child.getAttribute("value")); });
        };
        if (child.getNodeName() == "constant") {
            if (curve && !std::holds_alternative<std::monostate>(curve->constant))
                fail(child, fmt::format("input '{}' has two constants", what));
            if (!curve)
                curve.emplace();
            curve->constant = value();
        } else if (child.getNodeName() == "keyframe") {
            double time = at(child, [&] { return child.getDoubleAttribute("time"); });
            if (!times.insert(time).second)
                fail(child, fmt::format("input '{}' has two keyframes at time {}", what, time));
            if (!curve)
                curve.emplace();
            curve->keyframes.push_back({time, value()});
        } else {
            fail(child, fmt::format("unexpected <{}> in an input", child.getNodeName()));
        }
    }
    if (curve && std::holds_alternative<std::monostate>(curve->constant))
        fail(element, fmt::format("input '{}' has keyframes but no constant", what));
    return curve;
}

// A colour keeps one curve per channel, each in a <channel name>.
void readChannels(XmlElement const& element, PiNodeSpec::Input& input) {
    std::array<std::string, 3> const& names = PiColorProcNode::getChannelNames();
    for (XmlElement const& child : element.getChildren()) {
        if (child.getNodeName() != "channel")
            fail(child,
                 fmt::format("unexpected <{}> in the colour input '{}'", child.getNodeName(), input.name));
        std::string const name = at(child, [&] { return child.getAttribute("name"); });
        auto it = std::find(names.begin(), names.end(), name);
        if (it == names.end())
            fail(child, fmt::format("input '{}' has no channel '{}'", input.name, name));
        std::optional<PiNodeSpec::Curve>& curve =
            input.channels[static_cast<std::size_t>(it - names.begin())];
        if (curve)
            fail(child, fmt::format("input '{}' has two channels '{}'", input.name, name));
        curve = readCurve(child, PiSocketType::DOUBLE, input.name + "." + name);
        if (!curve)
            curve.emplace().constant = 0.0;
    }
}

PiNodeSpec::Input readInput(XmlElement const& element) {
    PiNodeSpec::Input input;
    input.name = at(element, [&] { return element.getAttribute("name"); });
    input.type = readSocketType(element);
    std::string cardinality = element.getAttribute("cardinality", "single");
    std::optional<Cardinality> parsed = stringToCardinality(cardinality);
    if (!parsed)
        fail(element, fmt::format("unknown cardinality '{}'", cardinality));
    input.cardinality = *parsed;
    input.dynamic = at(element, [&] { return element.getBoolAttribute("dynamic", false); });
    bool valueBacked = input.type.isValue() && input.cardinality == SINGLE;
    if (!valueBacked && !element.getChildren().empty())
        fail(element.getChildren().front(), fmt::format("input '{}' holds no value", input.name));
    if (input.type.isStructured())
        readChannels(element, input);
    else
        input.curve = readCurve(element, input.type, input.name);
    return input;
}

// Compositions saved while a colour was three number inputs name its channels
// "<colour> Red", "<colour> Green", "<colour> Blue": the colour input of the
// tool and the channel's index, when `name` is such a channel of one.
std::optional<std::pair<std::string, std::size_t>>
findOldChannel(std::vector<PiNodeSpec::Input> const& inputs, std::string const& name) {
    std::array<std::string, 3> const& names = PiColorProcNode::getChannelNames();
    for (std::size_t i = 0; i < names.size(); ++i) {
        std::string const suffix = " " + names[i];
        if (name.size() <= suffix.size() || name.compare(name.size() - suffix.size(), suffix.size(), suffix))
            continue;
        std::string const colour = name.substr(0, name.size() - suffix.size());
        for (PiNodeSpec::Input const& input : inputs)
            if (input.name == colour && input.type.isStructured())
                return std::make_pair(colour, i);
    }
    return std::nullopt;
}

struct StoredNode {
    PiNodeSpec spec;
    XmlElement const* graph = nullptr;
};

// The node exactly as the file has it.
StoredNode readStoredNode(XmlElement const& element) {
    StoredNode stored;
    PiNodeSpec& spec = stored.spec;
    spec.name = at(element, [&] { return element.getAttribute("name"); });
    spec.toolName = at(element, [&] { return element.getAttribute("tool"); });
    spec.schemaNb = at(element, [&] { return element.getIntAttribute("schema"); });
    for (XmlElement const& child : element.getChildren()) {
        std::string const& kind = child.getNodeName();
        if (kind == "input") {
            spec.inputs.push_back(readInput(child));
        } else if (kind == "output") {
            PiNodeSpec::Output output;
            output.name = at(child, [&] { return child.getAttribute("name"); });
            output.type = readSocketType(child);
            output.dynamic = at(child, [&] { return child.getBoolAttribute("dynamic", false); });
            spec.outputs.push_back(output);
        } else if (kind == "value") {
            PiNodeSpec::Value value;
            value.name = at(child, [&] { return child.getAttribute("name"); });
            std::string type = at(child, [&] { return child.getAttribute("type"); });
            std::optional<PiValueType> parsed = stringToValueType(type);
            if (!parsed)
                fail(child, fmt::format("unknown value type '{}'", type));
            value.type = *parsed;
            value.data =
                at(child, [&] { return PiVariantUtil::fromString(value.type, child.getAttribute("value")); });
            spec.values.push_back(value);
        } else if (kind == "graph") {
            if (stored.graph)
                fail(child, fmt::format("node '{}' has two graphs", spec.name));
            stored.graph = &child;
        } else {
            fail(child, fmt::format("unexpected <{}> in a node", kind));
        }
    }
    spec.group = stored.graph != nullptr;
    return stored;
}

// The tool's own node with the file's contents, or nothing when the tool
// cannot take them: a newer stored form, an older one it does not convert,
// a socket or value it does not know.
std::optional<PiNodeSpec> mergeWithTool(PiNodeSpec const& stored, RCShdPtr<PiTool const> const& tool) {
    PiToolProtocol const& protocol = tool->getProtocol();
    if (stored.schemaNb > protocol.getSchemaNb() ||
        (stored.schemaNb < protocol.getSchemaNb() && !protocol.allowsAutomaticBackwardComp()))
        return std::nullopt;
    if (stored.group != protocol.isSuperTool())
        return std::nullopt;
    PiNodeSpec spec = PiNodeSpec::fromTool(tool);
    spec.name = stored.name;
    for (PiNodeSpec::Input const& input : stored.inputs) {
        auto it = std::find_if(spec.inputs.begin(), spec.inputs.end(),
                               [&](PiNodeSpec::Input const& i) { return i.name == input.name; });
        auto old = it == spec.inputs.end() && !input.dynamic && input.type == PiSocketType::DOUBLE
                       ? findOldChannel(spec.inputs, input.name)
                       : std::nullopt;
        if (old) {
            auto colour = std::find_if(spec.inputs.begin(), spec.inputs.end(),
                                       [&](PiNodeSpec::Input const& i) { return i.name == old->first; });
            colour->channels[old->second] = input.curve;
        } else if (it == spec.inputs.end() && input.dynamic)
            spec.inputs.push_back(input);
        else if (it != spec.inputs.end() && !it->dynamic && it->type == input.type &&
                 it->cardinality == input.cardinality && !input.dynamic) {
            it->curve = input.curve;
            it->channels = input.channels;
        } else
            return std::nullopt;
    }
    for (PiNodeSpec::Output const& output : stored.outputs) {
        auto it = std::find_if(spec.outputs.begin(), spec.outputs.end(),
                               [&](PiNodeSpec::Output const& o) { return o.name == output.name; });
        if (it == spec.outputs.end() && output.dynamic)
            spec.outputs.push_back(output);
        else if (it == spec.outputs.end() || it->type != output.type || output.dynamic)
            return std::nullopt;
    }
    for (PiNodeSpec::Value const& value : stored.values) {
        auto it = std::find_if(spec.values.begin(), spec.values.end(),
                               [&](PiNodeSpec::Value const& v) { return v.name == value.name; });
        if (it == spec.values.end() || it->type != value.type)
            return std::nullopt;
        it->data = value.data;
    }
    return spec;
}

void readGraph(XmlElement const& element, PiGraph& graph);

void readNode(XmlElement const& element, PiGraph& graph) {
    StoredNode stored = readStoredNode(element);
    RCShdPtr<PiTool const> tool = PiToolRegistry::getInstance().getTool(stored.spec.toolName);
    std::optional<PiNodeSpec> spec;
    if (tool)
        spec = mergeWithTool(stored.spec, tool);
    if (!spec) {
        // A placeholder keeps the node as the file has it.
        OmGraphUtil::NodeCtrlFactory factory = nullptr;
        if (tool)
            factory = OmGraphUtil::getBrokenToolNodeCtrlFactory();
        else if (stored.spec.group)
            factory = OmGraphUtil::getMissingSuperToolNodeCtrlFactory();
        else
            factory = OmGraphUtil::getMissingToolNodeCtrlFactory();
        if (!factory)
            fail(element, tool ? fmt::format("node '{}': tool '{}' cannot read this stored form (schema {})",
                                             stored.spec.name, stored.spec.toolName, stored.spec.schemaNb)
                               : fmt::format("node '{}': tool '{}' is not installed", stored.spec.name,
                                             stored.spec.toolName));
        spec = std::move(stored.spec);
        spec->controller = factory();
    }
    RCShdPtr<PiNode> node = at(element, [&] { return graph.restoreNode(std::move(*spec)); });
    if (stored.graph)
        readGraph(*stored.graph, *node->getInnerGraph());
}

// The input a connection goes to, also a colour channel by its old name.
RCShdPtr<PiInput> findConnectedInput(PiGraph const& graph, std::string const& path) {
    auto [nodeName, socket] = PiSocketUtil::splitPath(path);
    RCShdPtr<PiNode> node = graph.getNode(nodeName);
    if (!node->getInput(socket) && node->getTool()) {
        std::vector<PiNodeSpec::Input> inputs;
        for (RCShdPtr<PiInput> const& input : node->getInputs())
            inputs.push_back({input->getName(), input->getType()});
        if (auto old = findOldChannel(inputs, socket))
            return node->getInput(old->first, true)
                ->getChannel(PiColorProcNode::getChannelNames()[old->second]);
    }
    return PiSocketUtil::findNodeInput(*node, socket, true);
}

// An output, or an input whose value an expression reads; an expression's
// reference may name it inside groups ("Group.Node.Output").
RCShdPtr<PiOutput> findConnectedOutput(PiGraph const& graph, std::string const& path) {
    auto [nodeName, socket] = PiSocketUtil::splitPath(path);
    RCShdPtr<PiNode> node = graph.getNode(nodeName);
    while (node->isGroup() && socket.find(PiSocketUtil::getSocketSeparator()) != std::string::npos) {
        auto [inner, rest] = PiSocketUtil::splitPath(socket);
        RCShdPtr<PiNode> child = node->getInnerGraph()->findNode(inner);
        if (!child)
            break;
        node = child;
        socket = rest;
    }
    if (!node->getOutput(socket))
        if (RCShdPtr<PiInput> input = node->getInput(socket); input && input->hasValueNode())
            return input->getValueNode()->getOutput(PiNode::getValueNodeOutputName(), true);
    return node->getOutput(socket, true);
}

// A reference of an expression: a dynamic input of an expression node.
bool isExpressionReference(PiInput const& input) {
    PiExpressionServices const* services = PiExpressionServices::getInstance();
    return input.isDynamic() && input.getNodePtr() && services &&
           services->isExpressionTool(*input.getNodePtr());
}

void readConnection(XmlElement const& element, PiGraph const& graph) {
    at(element, [&] {
        RCShdPtr<PiInput> input = findConnectedInput(graph, element.getAttribute("to"));
        RCShdPtr<PiOutput> output;
        try {
            output = findConnectedOutput(graph, element.getAttribute("from"));
        } catch (PiEx::ExGraphError const&) {
            // What an expression read is gone: the expression keeps its
            // text, and its node tells the user once it is loaded.
            if (isExpressionReference(*input))
                return;
            throw;
        }
        const_cast<PiGraph&>(graph).connect(output, input);
    });
}

void readGraph(XmlElement const& element, PiGraph& graph) {
    for (XmlElement const& child : element.getChildren()) {
        if (child.getNodeName() == "node")
            readNode(child, graph);
        else if (child.getNodeName() != "connection")
            fail(child, fmt::format("unexpected <{}> in a graph", child.getNodeName()));
    }
    // Once every node of the graph exists, whatever the order of the file.
    for (XmlElement const& child : element.getChildren())
        if (child.getNodeName() == "connection")
            readConnection(child, graph);
}

} // namespace

RCShdPtr<PiGraph> OmCompositionFile::fromXml(XmlElement const& root, std::string const& sourceName) {
    try {
        if (root.getNodeName() != "composition")
            fail(root, fmt::format("<{}> is not a composition", root.getNodeName()));
        int version = at(root, [&] { return root.getIntAttribute("version"); });
        if (version != FORMAT_VERSION)
            fail(root, fmt::format("format version {} is not one this program reads ({})", version,
                                   FORMAT_VERSION));
        RCShdPtr<PiGraph> graph(new PiGraph);
        {
            PiUndoGuardNoLog noLog;
            readGraph(root, *graph);
        }
        graph->notifyLoaded();
        graph->buildProcNodes();
        return graph;
    } catch (ElementError const& error) {
        throw OmEx::ExBadComposition(
            __FILE__, __LINE__, fmt::format("{}, line {}: {}", sourceName, error.getLine(), error.what()));
    }
}

RCShdPtr<PiGraph> OmCompositionFile::load(OsFilePath const& path) {
    XmlElement root("composition");
    try {
        root = XmlElement::parseFile(path);
    } catch (XmlEx::ExParseError const& error) {
        throw OmEx::ExBadComposition(__FILE__, __LINE__, error.getReason());
    } catch (OsFileEx::ExFileError const& error) {
        throw OmEx::ExBadComposition(__FILE__, __LINE__, error.getReason());
    }
    return fromXml(root, path.toString());
}

} // namespace Qv
