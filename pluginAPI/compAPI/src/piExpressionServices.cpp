#include "piExpressionServices.h"

#include "piExpressionInterface.h"
#include "piGraph.h"
#include "piInput.h"
#include "piNode.h"
#include "piUndoGuard.h"

namespace Qv {

namespace {
std::unique_ptr<PiExpressionServices>& instance() {
    static std::unique_ptr<PiExpressionServices> services;
    return services;
}
} // namespace

PiExpressionInterface::~PiExpressionInterface() = default;

PiExpressionServices::~PiExpressionServices() = default;

PiExpressionInterface* PiExpressionServices::findExpression(RCShdPtr<PiInput> const& input) const {
    RCShdPtr<PiOutput> driver = input ? input->getDriver() : RCShdPtr<PiOutput>();
    return driver ? getExpression(driver) : nullptr;
}

bool PiExpressionServices::removeExpression(RCShdPtr<PiInput> const& input) const {
    RCShdPtr<PiOutput> driver = input ? input->getDriver() : RCShdPtr<PiOutput>();
    if (!driver || !getExpression(driver))
        return false;
    RCShdPtr<PiNode> expressionNode = driver->getNode();
    PiGraph* graph = expressionNode->getGraph();
    QV_ASSERT(graph != nullptr);
    PiUndoGuard guard(graph->getCommandStack(), "Remove Expression");
    graph->removeNode(expressionNode);
    return true;
}

bool PiExpressionServices::supportsExpressions(RCShdPtr<PiInput> const& input) {
    if (!input || !input->getNodePtr() || input->getCardinality() != SINGLE || !input->hasValueNode())
        return false;
    PiSocketType const type = input->getType();
    return (type == PiSocketType::BOOLEAN || type == PiSocketType::DOUBLE || type == PiSocketType::INTEGER) &&
           input->getNodePtr()->isToolNode();
}

void PiExpressionServices::initialize(std::unique_ptr<PiExpressionServices> services) {
    instance() = std::move(services);
}

PiExpressionServices* PiExpressionServices::getInstance() {
    return instance().get();
}

} // namespace Qv
