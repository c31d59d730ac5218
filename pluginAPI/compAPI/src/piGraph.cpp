#include "piGraph.h"

#include "piEx.h"
#include "piExpressionServices.h"
#include "piNodeControllerManip.h"
#include "piProcBuilder.h"
#include "piSocketUtil.h"
#include "piToolRegistry.h"
#include "piTopologyInterface.h"
#include "piUndoGuard.h"
#include "piUndoRedoControllerHelper.h"

#include <algorithm>
#include <cctype>
#include <fmt/format.h>

namespace Qv {

namespace {

PiTopologyInterface* topologyOf(PiNode* node) {
    return node ? node->getInterface<PiTopologyInterface>() : nullptr;
}

// The node whose controller is told about a connection into `input`: for the
// input of a value node, the tool node that input stands for.
PiNode* ownerOf(PiInput& input, RCShdPtr<PiInput>& told) {
    PiNode* node = input.getNodePtr();
    told = RCShdPtr<PiInput>(&input);
    if (node && node->isValueNode()) {
        told = node->getOwnerInput();
        return told ? told->getNodePtr() : nullptr;
    }
    return node;
}

} // namespace

PiGraph::PiGraph() : _commandStack(std::make_unique<PiCommandStack>()), _uuid(Uuid::createRandom()) {}

PiGraph::PiGraph(PiNode& groupNode) : _groupNode(&groupNode) {}

PiGraph::~PiGraph() {
    // Logged changes hold nodes; they go first, while the graph still stands.
    if (_commandStack) {
        _commandStack->signal(PiGraphEvent::GraphClosing(_uuid));
        _commandStack->clear();
    }
    for (auto const& node : _nodes) {
        if (PiNodeController* controller = node->getControllerPtr()) {
            try {
                controller->nodeUnloaded();
            } catch (...) {
                // A destructor cannot pass it on; the node goes all the same.
            }
        }
    }
    for (auto const& node : _nodes)
        node->setGraph(nullptr);
    for (auto const& node : _boundaryNodes)
        node->setGraph(nullptr);
}

PiGraph& PiGraph::getRootGraph() {
    PiGraph* graph = this;
    while (graph->_groupNode) {
        PiGraph* outer = graph->_groupNode->getGraph();
        QV_ASSERT(outer != nullptr);
        graph = outer;
    }
    return *graph;
}

Uuid const& PiGraph::getUuid() {
    return getRootGraph()._uuid;
}

PiCommandStack& PiGraph::getCommandStack() {
    PiGraph& root = getRootGraph();
    QV_ASSERT(root._commandStack != nullptr);
    return *root._commandStack;
}

RCShdPtr<PiNode> PiGraph::findNode(std::string_view name) const {
    for (auto const& node : _nodes)
        if (node->getName() == name)
            return node;
    return findBoundaryNode(name);
}

RCShdPtr<PiNode> PiGraph::getNode(std::string_view name) const {
    RCShdPtr<PiNode> node = findNode(name);
    if (!node)
        throw PiEx::ExUnknownNode(__FILE__, __LINE__, fmt::format("no node named '{}'", name));
    return node;
}

RCShdPtr<PiNode> PiGraph::findBoundaryNode(std::string_view name) const {
    for (auto const& node : _boundaryNodes)
        if (node->getName() == name)
            return node;
    return {};
}

std::string PiGraph::makeUniqueName(std::string const& base) const {
    std::string stem;
    for (char c : base)
        if (!std::isspace(static_cast<unsigned char>(c)) && c != PiSocketUtil::getSocketSeparator().front())
            stem += c;
    if (stem.empty())
        stem = "Node";
    for (int n = 1;; ++n) {
        std::string name = stem + std::to_string(n);
        if (!findNode(name))
            return name;
    }
}

void PiGraph::checkName(std::string const& name, PiNode const* except) const {
    if (name.empty() || name.find(PiSocketUtil::getSocketSeparator()) != std::string::npos)
        throw PiEx::ExInvalidName(
            __FILE__, __LINE__,
            fmt::format("'{}' is not a valid node name: it must not be empty nor hold '{}'", name,
                        PiSocketUtil::getSocketSeparator()));
    RCShdPtr<PiNode> other = findNode(name);
    if (other && other.get() != except)
        throw PiEx::ExInvalidName(__FILE__, __LINE__, fmt::format("a node named '{}' already exists", name));
}

RCShdPtr<PiNode> PiGraph::createNode(std::string const& toolName, std::string const& name) {
    RCShdPtr<PiTool const> tool = PiToolRegistry::getInstance().findTool(toolName);
    if (!tool)
        throw PiEx::ExUnknownTool(__FILE__, __LINE__, fmt::format("no tool named '{}'", toolName));
    PiNodeSpec spec = PiNodeSpec::fromTool(tool);
    spec.name = name.empty() ? makeUniqueName(tool->getShortName()) : name;
    RCShdPtr<PiNode> node = addNode(std::move(spec));
    node->getControllerPtr()->nodeCreated();
    PiProcBuilder::buildNodeTree(*node);
    return node;
}

RCShdPtr<PiNode> PiGraph::restoreNode(PiNodeSpec spec) {
    return addNode(std::move(spec));
}

RCShdPtr<PiNode> PiGraph::addNode(PiNodeSpec spec) {
    checkName(spec.name, nullptr);
    RCShdPtr<PiNode> node = PiNode::build(std::move(spec));
    insertNode(node, _nodes.size());
    getCommandStack().record(
        "Add " + node->getName(),
        [this, node] {
            eraseNode(*node);
            PiProcBuilder::releaseNodeTree(*node);
        },
        [this, node] {
            insertNode(node, _nodes.size());
            PiProcBuilder::buildNodeTree(*node);
        });
    return node;
}

void PiGraph::insertNode(RCShdPtr<PiNode> const& node, std::size_t position) {
    _nodes.insert(_nodes.begin() + static_cast<std::ptrdiff_t>(std::min(position, _nodes.size())), node);
    node->setGraph(this);
    setHelpersRegistered(*node, true);
}

std::size_t PiGraph::eraseNode(PiNode& node) {
    auto it = std::find_if(_nodes.begin(), _nodes.end(), [&](auto const& n) { return n.get() == &node; });
    QV_ASSERT(it != _nodes.end());
    setHelpersRegistered(node, false);
    auto position = static_cast<std::size_t>(it - _nodes.begin());
    RCShdPtr<PiNode> keep = *it;
    _nodes.erase(it);
    node.setGraph(nullptr);
    return position;
}

void PiGraph::setHelpersRegistered(PiNode& node, bool registered) {
    PiCommandStack& stack = getCommandStack();
    auto visit = [&](PiNode& n) {
        if (auto* helper = n.getInterface<PiUndoRedoControllerHelper>()) {
            if (registered)
                stack.addHelper(helper);
            else
                stack.removeHelper(helper);
        }
    };
    visit(node);
    if (node.getInnerGraph())
        for (auto const& inner : node.getInnerGraph()->getNodes())
            node.getInnerGraph()->setHelpersRegistered(*inner, registered);
}

void PiGraph::addBoundaryNode(RCShdPtr<PiNode> const& node) {
    _boundaryNodes.push_back(node);
    node->setGraph(this);
}

void PiGraph::removeBoundaryNode(std::string_view name) {
    std::erase_if(_boundaryNodes, [&](RCShdPtr<PiNode> const& node) {
        if (node->getName() != name)
            return false;
        node->setGraph(nullptr);
        return true;
    });
}

void PiGraph::removeNode(RCShdPtr<PiNode> const& node) {
    QV_ASSERT(node && node->getGraph() == this && node->isToolNode());
    PiUndoGuard guard(getCommandStack(), "Remove " + node->getName());
    if (PiExpressionServices const* expressions = PiExpressionServices::getInstance())
        for (RCShdPtr<PiInput> const& input : node->getInputs())
            expressions->removeExpression(input);
    disconnectAll(*node);
    std::size_t position = eraseNode(*node);
    getCommandStack().record(
        "Remove " + node->getName(),
        [this, node, position] {
            insertNode(node, position);
            PiProcBuilder::buildNodeTree(*node);
        },
        [this, node] {
            eraseNode(*node);
            PiProcBuilder::releaseNodeTree(*node);
        });
    node->getControllerPtr()->nodeRemoved();
    PiProcBuilder::releaseNodeTree(*node);
}

void PiGraph::renameNode(RCShdPtr<PiNode> const& node, std::string const& name) {
    QV_ASSERT(node && node->getGraph() == this && node->isToolNode());
    if (node->getName() == name)
        return;
    checkName(name, node.get());
    std::string old = node->getName();
    // What listeners change because of the rename (expressions naming the
    // node) joins its step.
    PiUndoGuard guard(getCommandStack(), "Rename " + old);
    auto apply = [node](std::string const& from, std::string const& to) {
        node->_name = to;
        PiNodeController* controller = node->getControllerPtr();
        controller->nameChanged();
        PiNodeControllerManip::signalEvent(*controller, PiNodeEvent::NameChanged(from));
        if (PiGraph* graph = node->getGraph())
            graph->getCommandStack().signal(PiGraphEvent::NodeRenamed(*node, from));
    };
    getCommandStack().record(
        "Rename " + old, [apply, old, name] { apply(name, old); }, [apply, old, name] { apply(old, name); });
    apply(old, name);
}

bool PiGraph::holds(PiNode const& node) const {
    if (belongs(node))
        return true;
    PiNode const* tool =
        node.isValueNode() && node.getOwnerInput() ? node.getOwnerInput()->getNodePtr() : &node;
    for (PiGraph const* graph = tool ? tool->getGraph() : nullptr; graph && graph->getGroupNode();
         graph = graph->getGroupNode()->getGraph())
        if (graph->getGroupNode()->getGraph() == this)
            return true;
    return false;
}

bool PiGraph::belongs(PiNode const& node) const {
    if (node.isValueNode()) {
        RCShdPtr<PiInput> owner = node.getOwnerInput();
        return owner && owner->getNodePtr() && belongs(*owner->getNodePtr());
    }
    return node.getGraph() == this;
}

void PiGraph::connect(RCShdPtr<PiOutput> const& output, RCShdPtr<PiInput> const& input) {
    QV_ASSERT(output && input);
    PiNode* from = output->getNodePtr();
    RCShdPtr<PiInput> target = input;
    if (input->hasValueNode())
        target = input->getValueNode()->getInput(PiNode::getValueNodeInputName(), true);
    PiNode* to = target->getNodePtr();
    std::string what = fmt::format("cannot connect {} to {}", output->getFullName(), input->getFullName());
    auto refuse = [&](std::string const& why) {
        throw PiEx::ExConnectionRefused(__FILE__, __LINE__, what + ": " + why);
    };
    // A dynamic input (an expression's reference) may read inside groups.
    bool const reads = input->isDynamic();
    if (!from || !to || !(belongs(*from) || (reads && holds(*from))) || !belongs(*to))
        refuse("the nodes are not both in this graph");
    if ((from->isValueNode() && !reads) || output->getType() != target->getType())
        refuse(fmt::format("the output gives {} and the input takes {}",
                           PiSocketType::typeToString(output->getType()),
                           PiSocketType::typeToString(target->getType())));
    std::vector<PiOutput*> const& fed = target->_outputs;
    if (std::find(fed.begin(), fed.end(), output.get()) != fed.end())
        return;
    if (PiProcBuilder::reaches(*target, *from))
        refuse("it would make a loop");
    RCShdPtr<PiInput> told;
    PiNode* owner = ownerOf(*target, told);
    PiTopologyInterface* topology = topologyOf(owner);
    if (target->getCardinality() == MULTIPLE && topology && !topology->canAddInputToComposite(told, output))
        refuse("the node refuses it");

    PiUndoGuard guard(getCommandStack(), "Connect " + input->getFullName());
    if (target->getCardinality() == SINGLE && target->isConnected()) {
        RCShdPtr<PiOutput> previous = target->getConnectedOutput();
        std::size_t position = unlink(*previous, *target);
        recordLink(previous, target, position, false);
    }
    std::size_t position = target->_outputs.size();
    link(*output, *target, position);
    recordLink(output, target, position, true);
    PiProcBuilder::rebuildReaderOf(*target);
}

void PiGraph::disconnect(RCShdPtr<PiInput> const& input) {
    QV_ASSERT(input);
    RCShdPtr<PiInput> target = input;
    if (input->hasValueNode())
        target = input->getValueNode()->getInput(PiNode::getValueNodeInputName(), true);
    if (!target->isConnected())
        return;
    PiUndoGuard guard(getCommandStack(), "Disconnect " + input->getFullName());
    while (target->isConnected()) {
        RCShdPtr<PiOutput> output = RCShdPtr<PiOutput>(target->_outputs.back());
        std::size_t position = unlink(*output, *target);
        recordLink(output, target, position, false);
    }
    PiProcBuilder::rebuildReaderOf(*target);
}

void PiGraph::disconnectAll(PiNode& node) {
    for (RCShdPtr<PiInput> const& input : node.getInputs())
        disconnect(input);
    for (RCShdPtr<PiOutput> const& output : node.getOutputs())
        for (RCShdPtr<PiInput> const& input : output->getConnectedInputs())
            input->getNodePtr()->getGraph()->disconnect(input);
    for (RCShdPtr<PiInput> const& input : node.getInputs()) {
        if (!input->hasValueNode())
            continue;
        for (RCShdPtr<PiOutput> const& output : input->getValueNode()->getOutputs())
            for (RCShdPtr<PiInput> const& reader : output->getConnectedInputs())
                if (reader != input)
                    reader->getNodePtr()->getGraph()->disconnect(reader);
    }
}

void PiGraph::link(PiOutput& output, PiInput& input, std::size_t position) {
    input._outputs.insert(input._outputs.begin() + static_cast<std::ptrdiff_t>(position), &output);
    output._inputs.push_back(&input);
    RCShdPtr<PiInput> told;
    PiNode* owner = ownerOf(input, told);
    if (PiTopologyInterface* topology = topologyOf(owner)) {
        if (input.getCardinality() == MULTIPLE)
            topology->inputAddedToComposite(told, static_cast<int>(position));
        topology->inputConnected(told);
    }
    if (PiTopologyInterface* topology = topologyOf(output.getNodePtr()))
        topology->outputConnected(RCShdPtr<PiOutput>(&output), RCShdPtr<PiInput>(&input));
    if (owner && owner->getControllerPtr())
        PiNodeControllerManip::signalEvent(*owner->getControllerPtr(),
                                           PiNodeEvent::ConnectionChanged(told->getName()));
}

std::size_t PiGraph::unlink(PiOutput& output, PiInput& input) {
    auto it = std::find(input._outputs.begin(), input._outputs.end(), &output);
    QV_ASSERT(it != input._outputs.end());
    auto position = static_cast<std::size_t>(it - input._outputs.begin());
    input._outputs.erase(it);
    std::erase(output._inputs, &input);
    RCShdPtr<PiInput> told;
    PiNode* owner = ownerOf(input, told);
    if (PiTopologyInterface* topology = topologyOf(owner)) {
        if (input.getCardinality() == MULTIPLE)
            topology->inputRemovedFromComposite(told, static_cast<int>(position));
        topology->inputDisconnected(told);
    }
    if (PiTopologyInterface* topology = topologyOf(output.getNodePtr()))
        topology->outputDisconnected(RCShdPtr<PiOutput>(&output), RCShdPtr<PiInput>(&input));
    if (owner && owner->getControllerPtr())
        PiNodeControllerManip::signalEvent(*owner->getControllerPtr(),
                                           PiNodeEvent::ConnectionChanged(told->getName()));
    return position;
}

void PiGraph::recordLink(RCShdPtr<PiOutput> const& output, RCShdPtr<PiInput> const& input,
                         std::size_t position, bool linked) {
    auto doLink = [this, output, input, position] {
        link(*output, *input, position);
        PiProcBuilder::rebuildReaderOf(*input);
    };
    auto doUnlink = [this, output, input] {
        unlink(*output, *input);
        PiProcBuilder::rebuildReaderOf(*input);
    };
    std::string label = (linked ? "Connect " : "Disconnect ") + input->getFullName();
    if (linked)
        getCommandStack().record(label, doUnlink, doLink);
    else
        getCommandStack().record(label, doLink, doUnlink);
}

void PiGraph::buildProcNodes() {
    std::vector<PiNode*> seeds;
    for (auto const& node : _nodes)
        PiProcBuilder::collectNodeTree(*node, seeds);
    for (auto const& node : _boundaryNodes)
        seeds.push_back(node.get());
    PiProcBuilder::rebuild(seeds, false);
}

void PiGraph::notifyLoaded() {
    for (auto const& node : _nodes) {
        if (node->getInnerGraph())
            node->getInnerGraph()->notifyLoaded();
        node->getControllerPtr()->nodeLoaded();
    }
}

} // namespace Qv
