#include "btExpPxGraphBuilder.h"

#include "btExpMessages.h"
#include "piCreateProcGuard.h"
#include "piGraph.h"
#include "piInput.h"
#include "piOutput.h"
#include "uuid.h"

namespace Qv {

BtExpPxGraphBuilder::BtExpPxGraphBuilder(RCShdPtr<PiNode> owner,
                                         std::vector<RCShdPtr<PiSocket>> const& sockets,
                                         PiCreateProcGuard& guard)
    : BtExpPxGraphBase(std::move(owner)), _sockets(sockets.begin(), sockets.end()), _guard(guard) {}

bool BtExpPxGraphBuilder::onAttribute(LiString const& text, int firstColumn, int lastColumn) {
    auto cannot = [&] {
        return fail(std::make_unique<BtExpEx::ExInternalError>(
            __FILE__, __LINE__, BtExpMessages::getCannotGetProcNode(text), firstColumn, lastColumn));
    };
    if (_sockets.empty())
        return cannot();
    RCShdPtr<PiSocket> socket = _sockets.front();
    _sockets.pop_front();
    // An input is read where its value comes from: its value node's output.
    RCShdPtr<PiOutput> source = socket->isInput() ? static_cast<PiInput const&>(*socket).getConnectedOutput()
                                                  : RCShdPtr<PiOutput>(static_cast<PiOutput*>(socket.get()));
    RCShdPtr<PiNode> const& owner = getOwner();
    PiGraph* graph = owner->getGraph();
    // An input of the group holding the expression is read inside the group,
    // where it stands as a node of its own.
    if (socket->isInput() && graph && graph->getGroupNode() == socket->getNodePtr())
        if (RCShdPtr<PiNode> boundary = graph->findBoundaryNode(socket->getName()))
            source = boundary->getOutput(PiNode::getValueNodeOutputName());
    if (!source || !graph)
        return cannot();
    // Nothing may be thrown through the grammar: a refused input or
    // connection (a source in another graph) is this reference's failure.
    try {
        RCShdPtr<PiInput> input =
            owner->addDynamicInput(Uuid::createRandom().toString(), socket->getType(), SINGLE);
        graph->connect(source, input);
        Node node = Node::constCast(_guard.getInputNode(input));
        if (node.isNull())
            return cannot();
        push(std::move(node));
    } catch (ExBase const&) {
        return cannot();
    }
    return true;
}

} // namespace Qv
