#include "btExpPxGraphValidator.h"

#include "assertions.h"
#include "btExpMessages.h"
#include "liStringParser.h"
#include "liStringUtil.h"
#include "piGraph.h"
#include "piInput.h"
#include "piOutput.h"
#include "piProcBuilder.h"
#include "piSocketUtil.h"

namespace Qv {

namespace {

std::string trim(std::string_view text) {
    return LiStringUtil::trimLeadingAndTrailingSpaces(text);
}

// The node a socket's value comes from in the graph: for an input, its value
// node (or what feeds it), for an output its node.
PiNode* sourceNodeOf(PiSocket const& socket) {
    if (socket.isInput()) {
        auto const& input = static_cast<PiInput const&>(socket);
        if (input.hasValueNode())
            return input.getValueNode().get();
        RCShdPtr<PiOutput> output = input.getConnectedOutput();
        return output ? output->getNodePtr() : nullptr;
    }
    return socket.getNodePtr();
}

} // namespace

BtExpPxGraphValidator::BtExpPxGraphValidator(RCShdPtr<PiNode> owner) : BtExpPxGraphBase(std::move(owner)) {}

void BtExpPxGraphValidator::beginParse() {
    BtExpPxGraphBase::beginParse();
    _sockets.clear();
}

bool BtExpPxGraphValidator::refuse(std::string const& message, int firstColumn, int lastColumn) {
    return fail(
        std::make_unique<BtExpEx::ExUnknownAttribute>(__FILE__, __LINE__, message, firstColumn, lastColumn));
}

RCShdPtr<PiSocket> BtExpPxGraphValidator::findAttribute(RCShdPtr<PiNode> const& node, std::string const& name,
                                                        RCShdPtr<PiInput> const& sibling) {
    if (RCShdPtr<PiInput> input = PiSocketUtil::getInput(node, name))
        return input;
    if (sibling && sibling->getNodePtr() == node.get())
        if (RCShdPtr<PiInput> input = PiSocketUtil::findSiblingInput(sibling, name))
            return input;
    return node->getOutput(name);
}

RCShdPtr<PiNode> BtExpPxGraphValidator::findDrivenNode(RCShdPtr<PiInput>& driven) const {
    // Two steps downstream: the first reaches the value node standing between
    // the expression and the parameter, the second the parameter's node.
    RCShdPtr<PiNode> node = getOwner();
    for (int step = 0; step < 2 && node; ++step) {
        RCShdPtr<PiInput> input;
        for (RCShdPtr<PiOutput> const& output : node->getOutputs()) {
            std::vector<RCShdPtr<PiInput>> const inputs = output->getConnectedInputs();
            if (!inputs.empty()) {
                input = inputs.front();
                break;
            }
        }
        if (!input)
            return {};
        driven = input;
        node = input->getNode();
    }
    return node;
}

bool BtExpPxGraphValidator::onAttribute(LiString const& text, int firstColumn, int lastColumn) {
    std::string const& separator = PiSocketUtil::getSocketSeparator();
    std::string const whole = trim(text);
    RCShdPtr<PiNode> const& owner = getOwner();
    QV_ASSERT(owner != nullptr);
    PiGraph* graph = owner->getGraph();
    QV_ASSERT_MSG(graph != nullptr, "!graph.isNull()");

    std::string head;
    std::string rest;
    LiStringParser::splitString(whole, separator, head, rest);
    head = trim(head);
    RCShdPtr<PiSocket> socket;
    if (!head.empty()) {
        RCShdPtr<PiNode> node = graph->findNode(head);
        std::string attribute = trim(rest);
        // Into groups as long as the next part names a node inside.
        while (node && node->isGroup()) {
            std::string innerHead;
            std::string innerRest;
            if (!LiStringParser::splitString(attribute, separator, innerHead, innerRest))
                break;
            RCShdPtr<PiNode> inner = node->getInnerGraph()->findNode(trim(innerHead));
            if (!inner)
                return refuse(BtExpMessages::getUnknownNode(trim(innerHead)), firstColumn, lastColumn);
            node = inner;
            attribute = trim(innerRest);
        }
        if (attribute.empty())
            return refuse(whole, firstColumn, lastColumn);
        if (!node)
            return refuse(BtExpMessages::getUnknownNode(head), firstColumn, lastColumn);
        socket = findAttribute(node, attribute, {});
        if (!socket)
            return refuse(whole, firstColumn, lastColumn);
    } else {
        RCShdPtr<PiInput> driven;
        for (RCShdPtr<PiNode> node = findDrivenNode(driven); node && !socket;) {
            socket = findAttribute(node, whole, driven);
            PiGraph* holder = node->getGraph();
            node = holder && holder->getGroupNode() ? RCShdPtr<PiNode>(holder->getGroupNode())
                                                    : RCShdPtr<PiNode>();
        }
        if (!socket)
            return refuse(whole, firstColumn, lastColumn);
    }

    PiSocketType const type = socket->getType();
    if (type != PiSocketType::BOOLEAN && type != PiSocketType::DOUBLE && type != PiSocketType::INTEGER)
        return refuse(BtExpMessages::getUnsupportedSocketType(PiSocketType::typeToString(type)), firstColumn,
                      lastColumn);
    QV_ASSERT_MSG(!socket->isMultivalued(), "!socket->isMultivalued()");
    QV_ASSERT_MSG(!socket->isStructured(), "!socket->isStructured()");
    if (PiNode* source = sourceNodeOf(*socket); source && PiProcBuilder::isDownstream(*owner, *source))
        return refuse(BtExpMessages::getReferenceLoop(whole), firstColumn, lastColumn);

    _sockets.push_back(socket);
    Node constant = createDoubleConstant(0.0);
    if (constant.isNull())
        return fail(std::make_unique<BtExpEx::ExInternalError>(
            __FILE__, __LINE__, BtExpMessages::getCannotBuildConstValueNode(), firstColumn, lastColumn));
    push(std::move(constant));
    return true;
}

} // namespace Qv
