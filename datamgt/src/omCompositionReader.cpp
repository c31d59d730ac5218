// Reading compositions. Each failure names the file and the line of the
// element where it was found; the first one ends the reading and nothing of
// the half-read graph is kept.
#include "omCompositionFile.h"
#include "omEx.h"
#include "omGraphUtil.h"
#include "osFileEx.h"
#include "piEx.h"
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
    std::set<double> times;
    for (XmlElement const& child : element.getChildren()) {
        if (!valueBacked)
            fail(child, fmt::format("input '{}' holds no value", input.name));
        auto value = [&] {
            return at(child,
                      [&] { return PiVariantUtil::fromString(input.type, child.getAttribute("value")); });
        };
        if (child.getNodeName() == "constant") {
            if (input.curve && !std::holds_alternative<std::monostate>(input.curve->constant))
                fail(child, fmt::format("input '{}' has two constants", input.name));
            if (!input.curve)
                input.curve.emplace();
            input.curve->constant = value();
        } else if (child.getNodeName() == "keyframe") {
            double time = at(child, [&] { return child.getDoubleAttribute("time"); });
            if (!times.insert(time).second)
                fail(child, fmt::format("input '{}' has two keyframes at time {}", input.name, time));
            if (!input.curve)
                input.curve.emplace();
            input.curve->keyframes.push_back({time, value()});
        } else {
            fail(child, fmt::format("unexpected <{}> in an input", child.getNodeName()));
        }
    }
    if (input.curve && std::holds_alternative<std::monostate>(input.curve->constant))
        fail(element, fmt::format("input '{}' has keyframes but no constant", input.name));
    return input;
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
        if (it == spec.inputs.end() && input.dynamic)
            spec.inputs.push_back(input);
        else if (it != spec.inputs.end() && !it->dynamic && it->type == input.type &&
                 it->cardinality == input.cardinality && !input.dynamic)
            it->curve = input.curve;
        else
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

void readConnection(XmlElement const& element, PiGraph const& graph) {
    at(element, [&] {
        RCShdPtr<PiOutput> output = PiSocketUtil::findOutput(graph, element.getAttribute("from"));
        RCShdPtr<PiInput> input = PiSocketUtil::findInput(graph, element.getAttribute("to"));
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
