// Writing compositions: every node with all its sockets and values, so that
// a node whose tool is missing when the file is read again loses nothing.
#include "omCompositionFile.h"
#include "piColorProcNode.h"
#include "piGroupUtils.h"
#include "piSocketUtil.h"
#include "xmlWriter.h"

namespace Qv {

namespace {

void writeGraph(XmlElement& parent, PiGraph& graph);

void writeCurve(XmlElement& element, PiValueInterfaceBase const& value) {
    element.addChild("constant").setAttribute("value", PiVariantUtil::toString(value.getConstantVariant()));
    for (PiKeyframe const& key : value.getKeyframeVariants()) {
        XmlElement& keyframe = element.addChild("keyframe");
        keyframe.setAttribute("time", key.time);
        keyframe.setAttribute("value", PiVariantUtil::toString(key.value));
    }
}

void writeInput(XmlElement& parent, PiInput const& input) {
    XmlElement& element = parent.addChild("input");
    element.setAttribute("name", input.getName());
    element.setAttribute("type", PiSocketType::typeToString(input.getType()));
    if (input.getCardinality() == MULTIPLE)
        element.setAttribute("cardinality", cardinalityToString(MULTIPLE));
    if (input.isDynamic())
        element.setAttribute("dynamic", true);
    if (!input.hasValueNode())
        return;
    if (!input.isStructured()) {
        writeCurve(element, input.getValueInterface());
        return;
    }
    // Each channel keeps its own curve.
    for (std::string const& name : PiColorProcNode::getChannelNames()) {
        XmlElement& channel = element.addChild("channel");
        channel.setAttribute("name", name);
        writeCurve(channel, input.getChannel(name)->getValueInterface());
    }
}

void writeNode(XmlElement& parent, PiNode& node) {
    XmlElement& element = parent.addChild("node");
    element.setAttribute("name", node.getName());
    element.setAttribute("tool", node.getToolName());
    element.setAttribute("schema", node.getSchemaNb());
    for (RCShdPtr<PiInput> const& input : node.getInputs())
        writeInput(element, *input);
    for (RCShdPtr<PiOutput> const& output : node.getOutputs()) {
        XmlElement& child = element.addChild("output");
        child.setAttribute("name", output->getName());
        child.setAttribute("type", PiSocketType::typeToString(output->getType()));
        if (output->isDynamic())
            child.setAttribute("dynamic", true);
    }
    for (RCShdPtr<PiValue> const& value : node.getValues()) {
        XmlElement& child = element.addChild("value");
        child.setAttribute("name", value->getName());
        child.setAttribute("type", valueTypeToString(value->getType()));
        child.setAttribute("value", PiVariantUtil::toString(value->getData()));
    }
    if (node.getInnerGraph())
        writeGraph(element.addChild("graph"), *node.getInnerGraph());
}

// Where a connection comes from, as seen from the reading input's graph: an
// output, or an input whose value an expression reads, behind the names of
// the groups it lies in.
std::string sourcePath(PiOutput const& output, PiInput const& reader) {
    PiNode const* from = output.getNodePtr();
    if (!from)
        return output.getName();
    std::string socket = output.getName();
    if (from->isValueNode() && from->getOwnerInput()) {
        socket = from->getOwnerInput()->getName();
        from = from->getOwnerInput()->getNodePtr();
    }
    PiGraph const* graph = reader.getNodePtr() ? reader.getNodePtr()->getGraph() : nullptr;
    RCShdPtr<PiNode const> group(graph ? graph->getGroupNode() : nullptr);
    return PiGroupUtils::getName(RCShdPtr<PiNode const>(from), group) + PiSocketUtil::getSocketSeparator() +
           socket;
}

// The connections into the node's inputs, in the order of the inputs; for
// a value-backed input, what drives its value.
void writeConnectionsInto(XmlElement& parent, PiInput const& input) {
    RCShdPtr<PiInput> fed(const_cast<PiInput*>(&input));
    if (input.hasValueNode())
        fed = input.getValueNode()->getInput(PiNode::getValueNodeInputName(), true);
    for (RCShdPtr<PiOutput> const& output : fed->getConnectedOutputs()) {
        XmlElement& connection = parent.addChild("connection");
        connection.setAttribute("from", sourcePath(*output, input));
        connection.setAttribute("to", input.getFullName());
    }
    if (input.isStructured() && input.hasValueNode())
        for (std::string const& name : PiColorProcNode::getChannelNames())
            writeConnectionsInto(parent, *input.getChannel(name));
}

void writeConnections(XmlElement& parent, PiNode const& node) {
    for (RCShdPtr<PiInput> const& input : node.getInputs())
        writeConnectionsInto(parent, *input);
}

void writeGraph(XmlElement& parent, PiGraph& graph) {
    for (RCShdPtr<PiNode> const& node : graph.getNodes())
        writeNode(parent, *node);
    for (RCShdPtr<PiNode> const& node : graph.getNodes())
        writeConnections(parent, *node);
    for (RCShdPtr<PiNode> const& node : graph.getBoundaryNodes())
        writeConnections(parent, *node);
}

} // namespace

XmlElement OmCompositionFile::toXml(PiGraph& graph) {
    XmlElement root("composition");
    root.setAttribute("version", FORMAT_VERSION);
    writeGraph(root, graph);
    return root;
}

void OmCompositionFile::save(PiGraph& graph, OsFilePath const& path) {
    XmlWriter::writeFile(path, toXml(graph));
}

} // namespace Qv
