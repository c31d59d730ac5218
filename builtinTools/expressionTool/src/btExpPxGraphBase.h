#pragma once
// The base of the listeners that turn an expression into processing nodes.
// The grammar's post-order walk drives a stack: each operation pops its
// operands from the back, in reverse text order, and pushes its node; after an
// accepted text the one node left is the expression. What a reference becomes
// is the subclass's: it writes onAttribute and pushes one node per reference.
//
// Nodes are built on the application's main flow, never on a worker.
// Failures are stored as the pending exception with the grammar's columns,
// and the operation returns false; nothing is thrown from inside the grammar.
#include "btExpNodeTypes.h"
#include "btExpParserProtocol.h"
#include "piNode.h"
#include "rcShdPtr.h"

#include <vector>

namespace Qv {

class BtExpPxGraphBase : public BtExpParserProtocol {
public:
    using Node = BtExpNodeTypes::Node;

    // Also empties the stack, so that a listener can serve several parses.
    void beginParse() override;

    bool onConstant(LiString const& text, int firstColumn, int lastColumn) override;
    bool onVector3(LiString const& x, LiString const& y, LiString const& z, int firstColumn,
                   int lastColumn) override;
    bool onVector2(LiString const& x, LiString const& y, int firstColumn, int lastColumn) override;
    bool onUnaryOperator(LiString const& op, int firstColumn, int lastColumn) override;
    bool onBinaryOperator(LiString const& op, int firstColumn, int lastColumn) override;
    bool onFunction0(LiString const& name, int firstColumn, int lastColumn) override;
    bool onFunction1(LiString const& name, int firstColumn, int lastColumn) override;
    bool onFunction2(LiString const& name, int firstColumn, int lastColumn) override;
    bool onFunction3(LiString const& name, int firstColumn, int lastColumn) override;
    bool onFunction4(LiString const& name, int firstColumn, int lastColumn) override;
    bool onComparison(LiString const& op, int firstColumn, int lastColumn) override;
    bool onBooleanBinaryOperator(LiString const& op, int firstColumn, int lastColumn) override;
    bool onBooleanUnaryOperator(LiString const& op, int firstColumn, int lastColumn) override;

    // The expression's node after an accepted text.
    Node const& getResult() const;
    // The node that owns the expression; null where there is none (a test, qv expr).
    RCShdPtr<PiNode> const& getOwner() const { return _owner; }

protected:
    explicit BtExpPxGraphBase(RCShdPtr<PiNode> owner = {});
    ~BtExpPxGraphBase() override;

    void push(Node node);
    // Asserts "!_nodesStack.empty()".
    Node pop();
    // Stores the exception as pending and returns false, for the grammar.
    bool fail(OPtr<BtExpEx> exception);
    // A double that holds at all times.
    static Node createDoubleConstant(double value);

private:
    // The last `count` nodes, in text order.
    std::vector<Node> popArguments(int count);
    bool onFunction(LiString const& name, int count, int firstColumn, int lastColumn);
    // Both operands doubles or both 3D vectors; otherwise a syntax error with typeError.
    bool onNumericBinary(LiString const& op, std::string const& typeError, int firstColumn, int lastColumn);
    // A node the operator builder made, or an unknown operator where it made none.
    bool pushOperator(Node node, LiString const& op, int firstColumn, int lastColumn);

    RCShdPtr<PiNode> const _owner;
    std::vector<Node> _nodesStack;
};

} // namespace Qv
