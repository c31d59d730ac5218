#include "piProcBuilder.h"

#include "piAppThread.h"
#include "piEx.h"
#include "piGraph.h"
#include "piGroupTopologyInterface.h"
#include "piNode.h"
#include "piProcNodeFactory.h"
#include "piToolTopologyInterface.h"

#include <algorithm>
#include <fmt/format.h>
#include <map>
#include <set>

namespace Qv {

namespace {

// Collects what a controller publishes; applied to the outputs once the
// controller is done, so that a failed build changes nothing.
class Publisher : public PiToolTopologyInterface::OutputPublisher,
                  public PiBoundaryTopologyInterface::Publisher {
public:
    explicit Publisher(PiNode& node) : _node(node) {}

    void publish(RCShdPtr<PiOutput> const& output, PxStrongHndl<PxNode const> const& node) override {
        QV_ASSERT(output && output->getNodePtr() == &_node);
        QV_ASSERT(node.isNull() || node->isInitialized());
        _published[output.get()] = node;
    }
    PxStrongHndl<PxNode const> getInputProcNode(std::string const& name) override {
        RCShdPtr<PiInput> input = _node.getInput(name, true);
        PxStrongHndl<PxNode const> node = PiProcBuilder::getInputProcNode(*input);
        if (auto* topology = _node.getInterface<PiToolTopologyInterface>())
            node = topology->createInputProcNode(input, node);
        return node;
    }
    std::vector<PxStrongHndl<PxNode const>> getInputProcNodes(std::string const& name) override {
        RCShdPtr<PiInput> input = _node.getInput(name, true);
        std::vector<PxStrongHndl<PxNode const>> nodes = PiProcBuilder::getInputProcNodes(*input);
        if (auto* topology = _node.getInterface<PiToolTopologyInterface>())
            for (auto& node : nodes)
                node = topology->createInputProcNode(input, node);
        return nodes;
    }

    PxStrongHndl<PxNode const> take(PiOutput& output) {
        auto it = _published.find(&output);
        return it == _published.end() ? PxStrongHndl<PxNode const>() : it->second;
    }

private:
    PiNode& _node;
    std::map<PiOutput*, PxStrongHndl<PxNode const>> _published;
};

} // namespace

PiNode* PiProcBuilder::readerOf(PiInput& input) {
    PiNode* node = input.getNodePtr();
    if (node && node->isGroup()) {
        RCShdPtr<PiNode> boundary = node->getBoundaryNode(input.getName());
        return boundary.get();
    }
    return node;
}

std::vector<PiNode*> PiProcBuilder::successorsOf(PiNode& node) {
    std::vector<PiNode*> next;
    for (RCShdPtr<PiOutput> const& output : node.getOutputs())
        for (RCShdPtr<PiInput> const& input : output->getConnectedInputs())
            if (PiNode* reader = readerOf(*input))
                next.push_back(reader);
    if (node.getKind() == PiNode::OUTPUT_BOUNDARY_NODE && node.getGraph() && node.getGraph()->getGroupNode())
        next.push_back(node.getGraph()->getGroupNode());
    return next;
}

bool PiProcBuilder::reaches(PiInput& input, PiNode& node) {
    PiNode* start = readerOf(input);
    return start && isDownstream(*start, node);
}

bool PiProcBuilder::isDownstream(PiNode& from, PiNode& node) {
    std::vector<PiNode*> stack{&from};
    std::set<PiNode*> seen;
    while (!stack.empty()) {
        PiNode* current = stack.back();
        stack.pop_back();
        if (!current || !seen.insert(current).second)
            continue;
        if (current == &node)
            return true;
        // A value node's output leads to its tool node.
        for (PiNode* next : successorsOf(*current))
            stack.push_back(next);
    }
    return false;
}

void PiProcBuilder::rebuild(std::vector<PiNode*> const& seeds, bool force) {
    // Every node downstream of a seed, in an order where each comes after all
    // that feed it (reverse post-order of a depth-first walk).
    std::vector<PiNode*> order;
    std::set<PiNode*> visited;
    std::vector<std::pair<PiNode*, bool>> stack;
    for (PiNode* seed : seeds)
        stack.emplace_back(seed, false);
    while (!stack.empty()) {
        auto [node, expanded] = stack.back();
        stack.pop_back();
        if (expanded) {
            order.push_back(node);
            continue;
        }
        if (!visited.insert(node).second)
            continue;
        stack.emplace_back(node, true);
        for (PiNode* next : successorsOf(*node))
            if (!visited.count(next))
                stack.emplace_back(next, false);
    }
    std::reverse(order.begin(), order.end());

    std::set<PiNode*> dirty(seeds.begin(), seeds.end());
    std::set<PiNode*> const forced = force ? dirty : std::set<PiNode*>();
    for (PiNode* node : order) {
        if (!dirty.count(node))
            continue;
        if (build(*node, forced.count(node) > 0))
            for (PiNode* next : successorsOf(*node))
                dirty.insert(next);
    }
}

bool PiProcBuilder::build(PiNode& node, bool force) {
    QV_ASSERT(PiAppThread::isCurrent());
    if (node.getKind() == PiNode::OUTPUT_BOUNDARY_NODE)
        return true;
    Publisher publisher(node);
    auto* tool = node.getInterface<PiToolTopologyInterface>();
    if (node.isGroup() && node.isToolNode()) {
        auto* group = node.getInterface<PiGroupTopologyInterface>();
        for (RCShdPtr<PiOutput> const& output : node.getOutputs()) {
            RCShdPtr<PiNode> boundary = node.getBoundaryNode(output->getName());
            RCShdPtr<PiOutput> inner =
                boundary ? boundary->getInputs().front()->getConnectedOutput() : RCShdPtr<PiOutput>();
            PxStrongHndl<PxNode const> procNode = inner ? inner->getProcNode() : PxStrongHndl<PxNode const>();
            if (group)
                group->createOutputProcNode(publisher, output, procNode);
            else
                publisher.publish(output, procNode);
        }
    } else if (tool) {
        if (node._procNodesBuilt && !force && tool->isRecreateProcNodesDisabled())
            return false;
        tool->createProcNodes(publisher);
    } else {
        return false;
    }
    node._procNodesBuilt = true;
    bool changed = false;
    for (RCShdPtr<PiOutput> const& output : node.getOutputs()) {
        PxStrongHndl<PxNode const> procNode = publisher.take(*output);
        if (tool && !node.isGroup() && !procNode.isNull())
            procNode = tool->createOutputProcNode(output, procNode);
        if (!(procNode == output->_procNode)) {
            changed = true;
            // The old node lives on in whatever work holds it.
            output->_procNode = std::move(procNode);
        }
    }
    return changed;
}

void PiProcBuilder::publish(PiNode& node, std::map<PiOutput*, PxStrongHndl<PxNode const>> const& published) {
    std::vector<PiNode*> changed;
    for (auto const& [output, procNode] : published) {
        QV_ASSERT(output && output->getNodePtr() == &node);
        QV_ASSERT(procNode.isNull() || procNode->isInitialized());
        if (!(procNode == output->_procNode)) {
            output->_procNode = procNode;
            for (RCShdPtr<PiInput> const& input : output->getConnectedInputs())
                if (PiNode* reader = readerOf(*input))
                    changed.push_back(reader);
        }
    }
    if (!changed.empty())
        rebuild(changed, false);
}

void PiProcBuilder::rebuildReaderOf(PiInput& input) {
    if (PiNode* reader = readerOf(input))
        rebuild({reader}, false);
}

void PiProcBuilder::collectValueNodes(PiNode& node, std::vector<PiNode*>& nodes) {
    for (RCShdPtr<PiInput> const& input : node.getInputs())
        if (input->hasValueNode()) {
            // A structured value's channels have value nodes of their own.
            collectValueNodes(*input->getValueNode(), nodes);
            nodes.push_back(input->getValueNode().get());
        }
}

void PiProcBuilder::rebuildNodeAndValues(PiNode& node) {
    std::vector<PiNode*> seeds;
    collectValueNodes(node, seeds);
    if (node.getInnerGraph())
        for (RCShdPtr<PiNode> const& boundary : node.getInnerGraph()->getBoundaryNodes())
            seeds.push_back(boundary.get());
    seeds.push_back(&node);
    rebuild(seeds, false);
}

void PiProcBuilder::collectNodeTree(PiNode& node, std::vector<PiNode*>& nodes) {
    collectValueNodes(node, nodes);
    if (RCShdPtr<PiGraph> const& inner = node.getInnerGraph()) {
        for (RCShdPtr<PiNode> const& boundary : inner->getBoundaryNodes())
            nodes.push_back(boundary.get());
        for (RCShdPtr<PiNode> const& child : inner->getNodes())
            collectNodeTree(*child, nodes);
    }
    nodes.push_back(&node);
}

void PiProcBuilder::buildNodeTree(PiNode& node) {
    std::vector<PiNode*> nodes;
    collectNodeTree(node, nodes);
    rebuild(nodes, false);
}

void PiProcBuilder::releaseNodeTree(PiNode& node) {
    std::vector<PiNode*> nodes;
    collectNodeTree(node, nodes);
    for (PiNode* each : nodes) {
        for (RCShdPtr<PiOutput> const& output : each->getOutputs())
            output->_procNode.reset();
        each->_procNodesBuilt = false;
    }
}

PxStrongHndl<PxNode const> PiProcBuilder::getInputProcNode(PiInput& input) {
    if (RCShdPtr<PiOutput> output = input.getConnectedOutput())
        if (!output->getProcNode().isNull())
            return output->getProcNode();
    if (input._neutralNode.isNull())
        input._neutralNode = PiProcNodeFactory::createGeneratorNode(input.getType());
    return input._neutralNode;
}

std::vector<PxStrongHndl<PxNode const>> PiProcBuilder::getInputProcNodes(PiInput& input) {
    std::vector<PxStrongHndl<PxNode const>> nodes;
    for (RCShdPtr<PiOutput> const& output : input.getConnectedOutputs())
        if (!output->getProcNode().isNull())
            nodes.push_back(output->getProcNode());
    return nodes;
}

} // namespace Qv
