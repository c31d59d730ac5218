#include "piNode.h"

#include "piBoundaryControllers.h"
#include "piColorProcNode.h"
#include "piColorValueNodeController.h"
#include "piEx.h"
#include "piGraph.h"
#include "piGroupTopologyInterface.h"
#include "piProcBuilder.h"
#include "piSocketUtil.h"
#include "piToolTopologyInterface.h"
#include "piValueChangeInterface.h"
#include "piValueNodes.h"

#include <algorithm>
#include <fmt/format.h>

namespace Qv {

namespace {

template <class Socket>
RCShdPtr<Socket> findByName(std::vector<RCShdPtr<Socket>> const& items, std::string_view name) {
    for (auto const& item : items)
        if (item->getName() == name)
            return item;
    return {};
}

[[noreturn]] void throwUnknown(PiNode const& node, char const* what, std::string_view name) {
    throw PiEx::ExUnknownSocket(__FILE__, __LINE__,
                                fmt::format("node {} has no {} named '{}'", node.getName(), what, name));
}

} // namespace

std::string const& PiNode::getValueNodeInputName() {
    static std::string const name = "Input";
    return name;
}

std::string const& PiNode::getValueNodeOutputName() {
    static std::string const name = "Output";
    return name;
}

PiNode::PiNode(Kind kind, std::string name) : _kind(kind), _name(std::move(name)) {}

PiNode::~PiNode() {
    // Sockets and values may be held elsewhere: they must not reach a dead node.
    for (auto const& input : _inputs)
        input->_node = nullptr;
    for (auto const& output : _outputs)
        output->_node = nullptr;
    for (auto const& value : _values)
        value->_node = nullptr;
    if (_controller)
        _controller->_node = nullptr;
}

std::string PiNode::getName() const {
    if (_kind == VALUE_NODE && _ownerInput)
        return _ownerInput->getFullName();
    return _name;
}

PiGraph* PiNode::getGraph() const {
    if (_kind == VALUE_NODE) {
        PiNode* owner = _ownerInput ? _ownerInput->getNodePtr() : nullptr;
        return owner ? owner->getGraph() : nullptr;
    }
    return _graph;
}

void PiNode::setGraph(PiGraph* graph) {
    _graph = graph;
}

RCShdPtr<PiInput> PiNode::getInput(std::string_view name, bool checked) const {
    RCShdPtr<PiInput> input = findByName(_inputs, name);
    if (!input && checked)
        throwUnknown(*this, "input", name);
    return input;
}

RCShdPtr<PiOutput> PiNode::getOutput(std::string_view name, bool checked) const {
    RCShdPtr<PiOutput> output = findByName(_outputs, name);
    if (!output && checked)
        throwUnknown(*this, "output", name);
    return output;
}

RCShdPtr<PiValue> PiNode::getValue(std::string_view name, bool checked) const {
    RCShdPtr<PiValue> value = findByName(_values, name);
    if (!value && checked)
        throwUnknown(*this, "stored value", name);
    return value;
}

RCShdPtr<PiNode> PiNode::getBoundaryNode(std::string_view socketName) const {
    return _innerGraph ? _innerGraph->findBoundaryNode(socketName) : RCShdPtr<PiNode>();
}

RCShdPtr<PiNode> PiNode::build(PiNodeSpec spec) {
    RCShdPtr<PiNode> node(new PiNode(TOOL_NODE, spec.name));
    node->_toolName = spec.toolName;
    node->_schemaNb = spec.schemaNb;
    node->_tool = spec.tool;
    if (!spec.controller && spec.tool)
        spec.controller = spec.tool->createController();
    QV_ASSERT(spec.controller != nullptr);
    node->bindController(std::move(spec.controller));
    if (spec.group)
        node->_innerGraph = RCShdPtr<PiGraph>(new PiGraph(*node));
    for (PiNodeSpec::Input const& input : spec.inputs)
        node->makeInput(input);
    for (PiNodeSpec::Output const& output : spec.outputs)
        node->makeOutput(output);
    for (PiNodeSpec::Value const& value : spec.values) {
        node->checkFreeSocketName(value.name, false);
        if (node->getValue(value.name))
            throw PiEx::ExSocketRefused(
                __FILE__, __LINE__,
                fmt::format("node {} stores two values named '{}'", spec.name, value.name));
        if (!PiVariantUtil::holdsType(value.data, value.type))
            throw PiEx::ExBadValue(__FILE__, __LINE__,
                                   fmt::format("value {} of node {} is not a {}", value.name, spec.name,
                                               valueTypeToString(value.type)));
        node->_values.push_back(RCShdPtr<PiValue>(new PiValue(*node, value.name, value.type, value.data)));
    }
    return node;
}

void PiNode::bindController(OPtrRet<PiNodeController> controller) {
    _controller = RCStrongPtr<PiNodeController>(std::move(controller));
    _controller->_node = this;
}

void PiNode::checkFreeSocketName(std::string const& name, bool input) const {
    bool taken = input ? !getInput(name).isNull() : !getOutput(name).isNull();
    if (name.empty() || name.find(PiSocketUtil::getSocketSeparator()) != std::string::npos)
        throw PiEx::ExSocketRefused(
            __FILE__, __LINE__, fmt::format("'{}' is not a valid socket name on node {}", name, getName()));
    if (taken)
        throw PiEx::ExSocketRefused(
            __FILE__, __LINE__,
            fmt::format("node {} already has an {} named '{}'", getName(), input ? "input" : "output", name));
}

RCShdPtr<PiInput> PiNode::makeInput(PiNodeSpec::Input const& spec) {
    checkFreeSocketName(spec.name, true);
    RCShdPtr<PiInput> input(new PiInput(*this, spec.name, spec.type, spec.cardinality, spec.dynamic));
    _inputs.push_back(input);
    if (spec.type.isValue() && spec.cardinality == SINGLE) {
        input->_valueNode = makeValueNode(*input, spec);
        PiOutput* valueOutput = input->_valueNode->_outputs.front().get();
        valueOutput->_inputs.push_back(input.get());
        input->_outputs.push_back(valueOutput);
    }
    if (_innerGraph)
        _innerGraph->addBoundaryNode(
            makeBoundaryNode(INPUT_BOUNDARY_NODE, *_innerGraph, spec.name, spec.type));
    return input;
}

RCShdPtr<PiOutput> PiNode::makeOutput(PiNodeSpec::Output const& spec) {
    checkFreeSocketName(spec.name, false);
    RCShdPtr<PiOutput> output(new PiOutput(*this, spec.name, spec.type, spec.dynamic));
    _outputs.push_back(output);
    if (_innerGraph)
        _innerGraph->addBoundaryNode(
            makeBoundaryNode(OUTPUT_BOUNDARY_NODE, *_innerGraph, spec.name, spec.type));
    return output;
}

RCShdPtr<PiNode> PiNode::makeValueNode(PiInput& owner, PiNodeSpec::Input const& spec) {
    RCShdPtr<PiNode> node(new PiNode(VALUE_NODE, std::string()));
    node->_ownerInput = &owner;
    if (owner.isStructured())
        node->bindController(std::make_unique<PiColorValueNodeController>());
    else
        node->bindController(PiValueNodes::createController(owner.getType(), owner.getPolicy(), spec.curve));
    node->_inputs.push_back(
        RCShdPtr<PiInput>(new PiInput(*node, getValueNodeInputName(), owner.getType(), SINGLE, false)));
    node->_outputs.push_back(
        RCShdPtr<PiOutput>(new PiOutput(*node, getValueNodeOutputName(), owner.getType(), false)));
    if (owner.isStructured()) {
        std::array<std::string, 3> const& names = PiColorProcNode::getChannelNames();
        for (std::size_t i = 0; i < names.size(); ++i)
            node->makeInput({names[i], PiSocketType::DOUBLE, SINGLE, false, spec.channels[i]});
    }
    return node;
}

RCShdPtr<PiNode> PiNode::makeBoundaryNode(Kind kind, PiGraph& inner, std::string const& name,
                                          PiSocketType type) {
    RCShdPtr<PiNode> node(new PiNode(kind, name));
    if (kind == INPUT_BOUNDARY_NODE) {
        node->bindController(std::make_unique<PiInputBoundaryController>());
        node->_outputs.push_back(
            RCShdPtr<PiOutput>(new PiOutput(*node, getValueNodeOutputName(), type, false)));
    } else {
        node->bindController(std::make_unique<PiOutputBoundaryController>());
        node->_inputs.push_back(
            RCShdPtr<PiInput>(new PiInput(*node, getValueNodeInputName(), type, SINGLE, false)));
    }
    node->_graph = &inner;
    return node;
}

void PiNode::notifyValueChanged(std::string const& name, PiVariant const& value, bool input) {
    if (!_controller)
        return;
    PiNodeEvent::ValueChanged event(name, value, input);
    if (auto* listener = dynamic_cast<PiValueChangeInterface*>(_controller.get()))
        listener->valueChanged(event);
    _controller->signal(event);
}

std::size_t PiNode::detachSocket(PiSocket const& socket) {
    std::size_t position = 0;
    if (socket.isInput()) {
        auto it =
            std::find_if(_inputs.begin(), _inputs.end(), [&](auto const& i) { return i.get() == &socket; });
        QV_ASSERT(it != _inputs.end());
        position = static_cast<std::size_t>(it - _inputs.begin());
        _inputs.erase(it);
    } else {
        auto it =
            std::find_if(_outputs.begin(), _outputs.end(), [&](auto const& o) { return o.get() == &socket; });
        QV_ASSERT(it != _outputs.end());
        position = static_cast<std::size_t>(it - _outputs.begin());
        _outputs.erase(it);
    }
    if (_innerGraph)
        _innerGraph->removeBoundaryNode(socket.getName());
    return position;
}

void PiNode::attachSocket(RCShdPtr<PiSocket> const& socket, std::size_t position) {
    if (socket->isInput()) {
        RCShdPtr<PiInput> input = rcCast<PiInput>(socket);
        _inputs.insert(_inputs.begin() + static_cast<std::ptrdiff_t>(std::min(position, _inputs.size())),
                       input);
    } else {
        RCShdPtr<PiOutput> output = rcCast<PiOutput>(socket);
        _outputs.insert(_outputs.begin() + static_cast<std::ptrdiff_t>(std::min(position, _outputs.size())),
                        output);
    }
    if (_innerGraph)
        _innerGraph->addBoundaryNode(
            makeBoundaryNode(socket->isInput() ? INPUT_BOUNDARY_NODE : OUTPUT_BOUNDARY_NODE, *_innerGraph,
                             socket->getName(), socket->getType()));
}

void PiNode::recordSocketChange(std::string const& label, RCShdPtr<PiSocket> const& socket, bool added,
                                std::size_t position) {
    PiGraph* graph = getGraph();
    if (!graph)
        return;
    RCShdPtr<PiNode> self(this);
    auto detach = [self, socket] {
        self->detachSocket(*socket);
        PiProcBuilder::rebuildNodeAndValues(*self);
    };
    auto attach = [self, socket, position] {
        self->attachSocket(socket, position);
        PiProcBuilder::rebuildNodeAndValues(*self);
    };
    if (added)
        graph->getCommandStack().record(label, detach, attach);
    else
        graph->getCommandStack().record(label, attach, detach);
}

namespace {

template <class Hook>
bool askTopology(PiNode const& node, Hook hook) {
    if (auto* group = node.getInterface<PiGroupTopologyInterface>())
        return hook(*group);
    if (auto* tool = node.getInterface<PiToolTopologyInterface>())
        return hook(*tool);
    return false;
}

[[noreturn]] void throwRefused(std::string const& text) {
    throw PiEx::ExSocketRefused(__FILE__, __LINE__, text);
}

} // namespace

RCShdPtr<PiInput> PiNode::addDynamicInput(std::string const& name, PiSocketType type,
                                          Cardinality cardinality) {
    if (!askTopology(*this,
                     [&](auto& topology) { return topology.canAddDynamicInput(name, type, cardinality); }))
        throwRefused(fmt::format("node {} takes no input '{}'", getName(), name));
    RCShdPtr<PiInput> input = makeInput({name, type, cardinality, true, std::nullopt});
    recordSocketChange("Add Input " + name, input, true, _inputs.size() - 1);
    askTopology(*this, [&](auto& topology) {
        topology.dynamicInputAdded(input);
        return true;
    });
    PiProcBuilder::rebuildNodeAndValues(*this);
    return input;
}

void PiNode::removeDynamicInput(RCShdPtr<PiInput> const& input) {
    QV_ASSERT(input && input->getNodePtr() == this && input->isDynamic());
    if (!askTopology(*this, [&](auto& topology) { return topology.canRemoveDynamicInput(input); }))
        throwRefused(fmt::format("node {} keeps its input '{}'", getName(), input->getName()));
    PiGraph* graph = getGraph();
    QV_ASSERT(graph != nullptr);
    graph->disconnect(input);
    if (RCShdPtr<PiNode> boundary = getBoundaryNode(input->getName()))
        boundary->getGraph()->disconnectAll(*boundary);
    std::size_t position = detachSocket(*input);
    recordSocketChange("Remove Input " + input->getName(), input, false, position);
    askTopology(*this, [&](auto& topology) {
        topology.dynamicInputRemoved(input);
        return true;
    });
    PiProcBuilder::rebuildNodeAndValues(*this);
}

RCShdPtr<PiOutput> PiNode::addDynamicOutput(std::string const& name, PiSocketType type) {
    auto* group = getInterface<PiGroupTopologyInterface>();
    if (!group || !group->canAddDynamicOutput(name, type))
        throwRefused(fmt::format("node {} takes no output '{}'", getName(), name));
    RCShdPtr<PiOutput> output = makeOutput({name, type, true});
    recordSocketChange("Add Output " + name, output, true, _outputs.size() - 1);
    group->dynamicOutputAdded(output);
    PiProcBuilder::rebuildNodeAndValues(*this);
    return output;
}

void PiNode::removeDynamicOutput(RCShdPtr<PiOutput> const& output) {
    QV_ASSERT(output && output->getNodePtr() == this && output->isDynamic());
    auto* group = getInterface<PiGroupTopologyInterface>();
    if (!group || !group->canRemoveDynamicOutput(output))
        throwRefused(fmt::format("node {} keeps its output '{}'", getName(), output->getName()));
    PiGraph* graph = getGraph();
    QV_ASSERT(graph != nullptr);
    for (RCShdPtr<PiInput> const& input : output->getConnectedInputs())
        graph->disconnect(input);
    if (RCShdPtr<PiNode> boundary = getBoundaryNode(output->getName()))
        boundary->getGraph()->disconnectAll(*boundary);
    std::size_t position = detachSocket(*output);
    recordSocketChange("Remove Output " + output->getName(), output, false, position);
    group->dynamicOutputRemoved(output);
    PiProcBuilder::rebuildNodeAndValues(*this);
}

} // namespace Qv
