#pragma once
// What qv does with expressions: attach one to an input, take it off, and
// tell what drives an input. The expression package provides the service;
// without it these refuse with "expressions are not available".
#include "piGraph.h"

#include <string>

namespace Qv {

class PiExpressionInterface;

namespace QvExpressions {

// Throws ExBase when no package installed the expression service.
void requireAvailable();
// A node the user never sees as such: the expression driving an input.
bool isHidden(PiNode const& node);
// The expression driving the input; null when none does (or without the service).
PiExpressionInterface const* find(RCShdPtr<PiInput> const& input);
// `expr "TEXT"`, then ` (invalid: REASON)` when the text does not validate.
std::string describe(PiExpressionInterface const& expression);

// Sets the text of the expression driving `path` ("NODE.INPUT"), made if
// none does; the text is kept even when it does not validate. Returns the
// refusal ("expression refused at columns F-L: REASON"), empty when valid.
// Throws PiEx::ExUnknownNode, ExUnknownSocket, ExConnectionRefused for an
// input no expression can drive.
std::string attach(PiGraph& graph, std::string const& path, std::string const& text);
// Throws PiEx::ExConnectionRefused when no expression drives the input.
void detach(PiGraph& graph, std::string const& path);

} // namespace QvExpressions
} // namespace Qv
