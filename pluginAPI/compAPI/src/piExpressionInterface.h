#pragma once
// What the controller of an expression node offers: the text that drives a
// parameter, its validation against the graph, the processing graph built
// from it, and the comment beside it. An expression node is an ordinary node
// of the composition, hidden from users as a node: its result output drives
// the parameter, and one dynamic input per reference of the text is
// connected to the attribute the reference names. Application thread only.
#include "pxHandles.h"
#include "rcShdPtr.h"

#include <cstdint>
#include <string>

namespace Qv {

class PiOutput;

class PiExpressionInterface {
public:
    virtual ~PiExpressionInterface();

    // One undo step; the node validates and builds the new text.
    virtual void setExpression(std::string const& text) = 0;
    virtual std::string getExpression() const = 0;
    // Resolves the text's references; false, with the error's columns and
    // text kept, when it is refused.
    virtual bool validateExpression() = 0;
    // Replaces the processing graph and the dynamic inputs by those of the
    // text, when it is valid.
    virtual void buildExpression() = 0;
    virtual void rebuildExpression() = 0;
    // One undo step: an empty text, the parameter at its own value.
    virtual void clearExpression() = 0;
    // Rewrites the references from the connections (after a rename); returns
    // whether the text is valid.
    virtual bool adjustExpression() = 0;
    virtual bool isExpressionValid() const = 0;
    virtual void setComment(std::string const& text) = 0;
    virtual std::string getComment() const = 0;
    virtual RCShdPtr<PiOutput> getResultOutput() = 0;
    virtual RCShdPtr<PiOutput const> getResultOutput() const = 0;
    // The expression's processing node; null while the output gives its default.
    virtual PxStrongHndl<PxNode const> getRoot() const = 0;
    // What the output publishes: the root, or the cast of it to the output's type.
    virtual PxStrongHndl<PxNode const> getOutputNode() const = 0;
    // From the last validation: 0, 0 and an empty text when it passed.
    virtual std::int32_t getErrorFirstColumn() const = 0;
    virtual std::int32_t getErrorLastColumn() const = 0;
    virtual std::string getErrorText() const = 0;
};

} // namespace Qv
