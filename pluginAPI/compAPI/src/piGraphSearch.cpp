#include "piGraphSearch.h"

#include "piExpressionServices.h"
#include "piGraph.h"
#include "piNode.h"

#include <deque>
#include <set>

namespace Qv {

namespace {

// The nodes feeding `node`, through the filter; a group's input boundary
// node is fed by what feeds the group's input.
std::vector<RCShdPtr<PiNode const>> upstreamOf(PiNode const& node,
                                               PiGraphSearch::SocketFilter const& filter) {
    std::vector<RCShdPtr<PiNode const>> result;
    auto follow = [&](RCShdPtr<PiInput> const& input) {
        if (filter && !filter(input))
            return;
        for (RCShdPtr<PiOutput> const& output : input->getConnectedOutputs())
            if (RCShdPtr<PiNode> from = output->getNode())
                result.emplace_back(from);
    };
    for (RCShdPtr<PiInput> const& input : node.getInputs())
        follow(input);
    if (node.getKind() == PiNode::INPUT_BOUNDARY_NODE && node.getGraph() && node.getGraph()->getGroupNode())
        if (RCShdPtr<PiInput> input = node.getGraph()->getGroupNode()->getInput(node.getName()))
            follow(input);
    return result;
}

std::vector<RCShdPtr<PiNode const>> downstreamOf(PiNode const& node,
                                                 PiGraphSearch::SocketFilter const& filter) {
    std::vector<RCShdPtr<PiNode const>> result;
    for (RCShdPtr<PiOutput> const& output : node.getOutputs())
        for (RCShdPtr<PiInput> const& input : output->getConnectedInputs()) {
            if (filter && !filter(input))
                continue;
            if (RCShdPtr<PiNode> to = input->getNode())
                result.emplace_back(to);
        }
    if (node.getKind() == PiNode::OUTPUT_BOUNDARY_NODE && node.getGraph() && node.getGraph()->getGroupNode())
        result.emplace_back(node.getGraph()->getGroupNode());
    return result;
}

} // namespace

RCShdPtr<PiNode const> PiGraphSearch::depthFirst(RCShdPtr<PiNode const> const& start,
                                                 PiNodePredicate const& predicate,
                                                 SocketFilter const& filter) {
    std::vector<RCShdPtr<PiNode const>> stack{start};
    std::set<PiNode const*> seen;
    while (!stack.empty()) {
        RCShdPtr<PiNode const> node = stack.back();
        stack.pop_back();
        if (!node || !seen.insert(node.get()).second)
            continue;
        if (predicate(node))
            return node;
        std::vector<RCShdPtr<PiNode const>> next = upstreamOf(*node, filter);
        // Reversed, so that the first input's branch is walked first.
        stack.insert(stack.end(), next.rbegin(), next.rend());
    }
    return {};
}

RCShdPtr<PiNode const> PiGraphSearch::heightFirst(RCShdPtr<PiNode const> const& start,
                                                  PiNodePredicate const& predicate,
                                                  SocketFilter const& filter) {
    std::deque<RCShdPtr<PiNode const>> queue{start};
    std::set<PiNode const*> seen;
    while (!queue.empty()) {
        RCShdPtr<PiNode const> node = queue.front();
        queue.pop_front();
        if (!node || !seen.insert(node.get()).second)
            continue;
        if (predicate(node))
            return node;
        for (RCShdPtr<PiNode const> const& next : downstreamOf(*node, filter))
            queue.push_back(next);
    }
    return {};
}

PiNodePredicate PiIsToolNode::getPredicate() {
    return PiNodePredicate([](RCShdPtr<PiNode const> const& node) { return node && node->isToolNode(); });
}

PiNodePredicate PiIsLeafNode::getPredicate() {
    return PiNodePredicate([](RCShdPtr<PiNode const> const& node) {
        if (!node)
            return false;
        for (RCShdPtr<PiInput> const& input : node->getInputs())
            if (input->isConnected())
                return false;
        return node->getKind() != PiNode::INPUT_BOUNDARY_NODE;
    });
}

PiNodePredicate PiIsGroupNode::getPredicate() {
    return PiNodePredicate([](RCShdPtr<PiNode const> const& node) { return node && node->isGroup(); });
}

PiNodePredicate PiIsExpressionNode::getPredicate() {
    return PiNodePredicate([](RCShdPtr<PiNode const> const& node) {
        PiExpressionServices const* services = PiExpressionServices::getInstance();
        return node && services && services->isExpressionTool(*node);
    });
}

} // namespace Qv
