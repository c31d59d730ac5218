#include "qvExpressions.h"

#include "piEx.h"
#include "piExpressionInterface.h"
#include "piExpressionServices.h"
#include "piSocketUtil.h"

namespace Qv::QvExpressions {

namespace {

PiExpressionServices& services() {
    requireAvailable();
    return *PiExpressionServices::getInstance();
}

// The input a user named, never one of an expression's own: those are the
// package's business, and naming them would bypass what it keeps in step.
RCShdPtr<PiInput> findInput(PiGraph const& graph, std::string const& path) {
    RCShdPtr<PiInput> input = PiSocketUtil::findInput(graph, path);
    PiNode const* node = input->getNodePtr();
    if (node && isHidden(*node))
        throw PiEx::ExUnknownNode(__FILE__, __LINE__, "no node named '" + node->getName() + "'");
    return input;
}

std::string whyNoExpression(PiInput const& input) {
    PiSocketType const type = input.getType();
    if (type != PiSocketType::BOOLEAN && type != PiSocketType::DOUBLE && type != PiSocketType::INTEGER)
        return "it is of type " + PiSocketType::typeToString(type);
    if (input.getCardinality() == MULTIPLE)
        return "it takes many connections";
    if (input.getNodePtr() && input.getNodePtr()->isValueNode())
        return "it is a channel of " + input.getNodePtr()->getName();
    return "it holds no value of its own";
}

} // namespace

void requireAvailable() {
    if (!PiExpressionServices::getInstance())
        throw ExBase(__FILE__, __LINE__, "expressions are not available");
}

bool isHidden(PiNode const& node) {
    PiExpressionServices const* available = PiExpressionServices::getInstance();
    return available && available->isExpressionTool(node);
}

PiExpressionInterface const* find(RCShdPtr<PiInput> const& input) {
    PiExpressionServices const* available = PiExpressionServices::getInstance();
    return available ? available->findExpression(input) : nullptr;
}

std::string describe(PiExpressionInterface const& expression) {
    std::string text = "expr \"" + expression.getExpression() + '"';
    if (!expression.isExpressionValid()) {
        std::string reason = expression.getErrorText();
        text += " (invalid: " + (reason.empty() ? std::string("invalid") : reason) + ')';
    }
    return text;
}

std::string attach(PiGraph& graph, std::string const& path, std::string const& text) {
    PiExpressionServices& available = services();
    RCShdPtr<PiInput> input = findInput(graph, path);
    if (!PiExpressionServices::supportsExpressions(input))
        throw PiEx::ExGraphError(__FILE__, __LINE__,
                                 "input " + path + " cannot take an expression: " + whyNoExpression(*input) +
                                     "; expressions drive single boolean, double and integer inputs");
    PiExpressionInterface& expression = available.getOrCreateExpression(input);
    expression.setExpression(text);
    if (expression.isExpressionValid())
        return {};
    return "expression refused at columns " + std::to_string(expression.getErrorFirstColumn()) + '-' +
           std::to_string(expression.getErrorLastColumn()) + ": " + expression.getErrorText();
}

void detach(PiGraph& graph, std::string const& path) {
    PiExpressionServices& available = services();
    if (!available.removeExpression(findInput(graph, path)))
        throw PiEx::ExGraphError(__FILE__, __LINE__, "input " + path + " has no expression to remove");
}

} // namespace Qv::QvExpressions
