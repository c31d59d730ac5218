#include "btExpNodeNameObserver.h"

#include "assertions.h"
#include "btExpAttributeAdjuster.h"
#include "piExpressionInterface.h"
#include "piExpressionServices.h"
#include "piGraph.h"
#include "piInput.h"
#include "piNode.h"

#include <vector>

namespace Qv {

namespace {

BtExpNodeNameObserver* nodeNameObserver = nullptr;

// Whether `node` is `renamed` or inside it.
bool isWithin(PiNode const* node, PiNode const& renamed) {
    while (node) {
        if (node == &renamed)
            return true;
        PiGraph const* graph = node->getGraph();
        node = graph ? graph->getGroupNode() : nullptr;
    }
    return false;
}

void collectConcerned(PiGraph& graph, PiNode const& renamed, PiExpressionServices const& services,
                      std::vector<RCShdPtr<PiNode>>& concerned) {
    for (RCShdPtr<PiNode> const& node : graph.getNodes()) {
        if (node->isGroup())
            collectConcerned(*node->getInnerGraph(), renamed, services, concerned);
        if (!services.isExpressionTool(*node))
            continue;
        for (RCShdPtr<PiInput> const& input : node->getInputs()) {
            if (!input->isDynamic())
                continue;
            BtExpAttributeAdjuster::AttributeSource const source =
                BtExpAttributeAdjuster::findAttributeSource(*input);
            if (isWithin(source.owner.get(), renamed)) {
                concerned.push_back(node);
                break;
            }
        }
    }
}

} // namespace

void BtExpNodeNameObserver::initialize() {
    QV_ASSERT(nodeNameObserver == 0);
    nodeNameObserver = new BtExpNodeNameObserver;
}

void BtExpNodeNameObserver::finalize() {
    delete nodeNameObserver;
    nodeNameObserver = nullptr;
}

BtExpNodeNameObserver& BtExpNodeNameObserver::getInstance() {
    QV_ASSERT(nodeNameObserver != nullptr);
    return *nodeNameObserver;
}

BtExpNodeNameObserver::~BtExpNodeNameObserver() {
    // Graphs tell when they close, so every one still here is alive.
    for (auto const& [uuid, graph] : _graphs)
        graph->removeCallback(this);
}

void BtExpNodeNameObserver::attach(PiGraph& graph) {
    PiGraph& root = graph.getRootGraph();
    if (_graphs.emplace(root.getUuid(), &root).second)
        root.addCallback(this);
}

void BtExpNodeNameObserver::call(PiGraphEvent const& event) {
    if (auto const* closing = dynamic_cast<PiGraphEvent::GraphClosing const*>(&event)) {
        _graphs.erase(closing->getUuid());
        return;
    }
    auto const* renamed = dynamic_cast<PiGraphEvent::NodeRenamed const*>(&event);
    if (!renamed)
        return;
    PiGraph* graph = renamed->getNode().getGraph();
    if (!graph || graph->getCommandStack().isUndoRedoOngoing())
        return;
    nodeRenamed(renamed->getNode());
}

void BtExpNodeNameObserver::nodeRenamed(PiNode& renamed) {
    PiExpressionServices const* services = PiExpressionServices::getInstance();
    if (!services)
        return;
    std::vector<RCShdPtr<PiNode>> concerned;
    collectConcerned(renamed.getGraph()->getRootGraph(), renamed, *services, concerned);
    for (RCShdPtr<PiNode> const& node : concerned)
        if (auto* expression = node->getInterface<PiExpressionInterface>())
            expression->adjustExpression();
}

} // namespace Qv
