#include "btExpressionServices.h"

#include "assertions.h"
#include "btExpressionTool.h"
#include "piExpressionInterface.h"
#include "piGraph.h"
#include "piInput.h"
#include "piNode.h"
#include "piOutput.h"
#include "piTool.h"
#include "piUndoGuard.h"

namespace Qv {

RCShdPtr<PiTool const> BtExpressionServices::createTool(PiSocketType type) const {
    return BtExpressionTool::getTool(type);
}

bool BtExpressionServices::isExpressionTool(PiTool const& tool) const {
    auto const* protocol = dynamic_cast<BtExpressionTool const*>(&tool.getProtocol());
    return protocol != nullptr;
}

bool BtExpressionServices::isExpressionToolOfType(PiTool const& tool, PiSocketType type) const {
    auto const* protocol = dynamic_cast<BtExpressionTool const*>(&tool.getProtocol());
    return protocol != nullptr && protocol->getType() == type;
}

bool BtExpressionServices::isExpressionTool(PiNode const& node) const {
    RCShdPtr<PiTool const> const& tool = node.getTool();
    return tool && isExpressionTool(*tool);
}

bool BtExpressionServices::isExpressionToolOfType(PiNode const& node, PiSocketType type) const {
    RCShdPtr<PiTool const> const& tool = node.getTool();
    return tool && isExpressionToolOfType(*tool, type);
}

PiExpressionInterface& BtExpressionServices::getOrCreateExpression(RCShdPtr<PiInput> const& in) {
    QV_ASSERT_MSG(supportsExpressions(in), "supportsExpressions( in )");
    if (PiExpressionInterface* existing = findExpression(in))
        return *existing;
    PiGraph* graph = in->getNodePtr()->getGraph();
    QV_ASSERT(graph != nullptr);
    PiUndoGuard guard(graph->getCommandStack(), "Set Expression String");
    RCShdPtr<PiNode> node =
        graph->createNode(createTool(in->getType())->getName(), graph->makeUniqueName("Expression"));
    auto* expression = node->getInterface<PiExpressionInterface>();
    QV_ASSERT_MSG(expression != nullptr, "!expressionNode.isNull()");
    graph->connect(expression->getResultOutput(), in);
    return *expression;
}

PiExpressionInterface* BtExpressionServices::getExpression(RCShdPtr<PiOutput const> const& output) const {
    PiNode* node = output ? output->getNodePtr() : nullptr;
    if (!node || !isExpressionTool(*node))
        return nullptr;
    return node->getInterface<PiExpressionInterface>();
}

} // namespace Qv
