#include "btExpPxGraphBase.h"

#include "assertions.h"
#include "btExpFunctionBuilder.h"
#include "btExpMessages.h"
#include "btExpOperatorBuilder.h"
#include "btVectorNodes.h"
#include "liStringUtil.h"
#include "piNode.h"
#include "pxThreadRules.h"
#include "pxValueNodes.h"

#include <locale>
#include <optional>
#include <sstream>
#include <tuple>
#include <utility>

namespace Qv {

using namespace BtExpNodeTypes;

namespace {

using V2 = GeVector2<double>;
using V3 = GeVector3<double>;

// Builds a function when every argument has the type of the signature T...:
// nullopt when the types differ, a null node when the name is not one of the
// signature's.
template <class... T, std::size_t... I>
std::optional<Node> buildIfTyped(std::string const& name, std::vector<Node> const& args,
                                 std::index_sequence<I...>) {
    std::tuple<Typed<T>...> const typed{asTyped<T>(args[I])...};
    if (!(!std::get<I>(typed).isNull() && ...))
        return std::nullopt;
    return BtExpFunctionBuilder().build(name, std::get<I>(typed)...);
}

template <class... T>
std::optional<Node> buildIfTyped(std::string const& name, std::vector<Node> const& args) {
    return buildIfTyped<T...>(name, args, std::index_sequence_for<T...>{});
}

// The signatures of each count, in the order they are tried.
std::optional<Node> buildFunction(std::string const& name, std::vector<Node> const& args) {
    std::optional<Node> node;
    switch (args.size()) {
    case 0:
        return BtExpFunctionBuilder().build(name);
    case 1:
        (node = buildIfTyped<double>(name, args)) || (node = buildIfTyped<V3>(name, args));
        break;
    case 2:
        (node = buildIfTyped<double, double>(name, args)) || (node = buildIfTyped<V3, V3>(name, args)) ||
            (node = buildIfTyped<V3, double>(name, args));
        break;
    case 3:
        (node = buildIfTyped<double, double, double>(name, args)) ||
            (node = buildIfTyped<V3, V3, V3>(name, args)) ||
            (node = buildIfTyped<V3, V3, double>(name, args)) ||
            (node = buildIfTyped<bool, double, double>(name, args));
        break;
    case 4:
        node = buildIfTyped<V2, V2, V2, V2>(name, args);
        break;
    }
    return node;
}

// The constant's value, read as in the classic locale whatever the user's.
std::optional<double> toDouble(std::string const& text) {
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    double value = 0.0;
    stream >> value;
    if (stream.fail() || !(stream >> std::ws).eof())
        return std::nullopt;
    return value;
}

template <class T>
Node createConstant(T const& value) {
    PxNode::Init init;
    PxStrongHndl<PxConstantAnimValueNode<T>> node(
        new PxConstantAnimValueNode<T>(init, PxResult<T>(value, PxValidityInterval::FULL)));
    PxNode::init(node);
    return node;
}

// The value of a constant node, or nullopt when the node is not a constant double.
std::optional<double> constantValue(Node const& node) {
    auto const* constant = dynamic_cast<PxConstantAnimValueNode<double> const*>(node.get());
    if (constant == nullptr)
        return std::nullopt;
    return constant->getValue();
}

} // namespace

BtExpPxGraphBase::BtExpPxGraphBase(RCShdPtr<PiNode> owner) : _owner(std::move(owner)) {}

BtExpPxGraphBase::~BtExpPxGraphBase() = default;

void BtExpPxGraphBase::beginParse() {
    BtExpParserProtocol::beginParse();
    _nodesStack.clear();
}

BtExpPxGraphBase::Node const& BtExpPxGraphBase::getResult() const {
    QV_ASSERT(_nodesStack.size() == 1);
    return _nodesStack.back();
}

void BtExpPxGraphBase::push(Node node) {
    QV_PX_NOT_ON_WORKER();
    _nodesStack.push_back(std::move(node));
}

BtExpPxGraphBase::Node BtExpPxGraphBase::pop() {
    QV_PX_NOT_ON_WORKER();
    QV_ASSERT(!_nodesStack.empty());
    Node node = std::move(_nodesStack.back());
    _nodesStack.pop_back();
    return node;
}

std::vector<BtExpPxGraphBase::Node> BtExpPxGraphBase::popArguments(int count) {
    std::vector<Node> args(static_cast<std::size_t>(count));
    for (int i = count - 1; i >= 0; --i)
        args[static_cast<std::size_t>(i)] = pop();
    return args;
}

BtExpPxGraphBase::Node BtExpPxGraphBase::createDoubleConstant(double value) {
    return createConstant(value);
}

bool BtExpPxGraphBase::fail(OPtr<BtExpEx> exception) {
    setPendingException(std::move(exception));
    return false;
}

bool BtExpPxGraphBase::onConstant(LiString const& text, int firstColumn, int lastColumn) {
    std::optional<double> const value = toDouble(text);
    if (!value)
        return fail(std::make_unique<BtExpEx::ExInternalError>(
            __FILE__, __LINE__, BtExpMessages::getCannotBuildValueNode(text), firstColumn, lastColumn));
    push(createConstant(*value));
    return true;
}

bool BtExpPxGraphBase::onVector3(LiString const& x, LiString const& y, LiString const& z, int firstColumn,
                                 int lastColumn) {
    std::vector<Node> const args = popArguments(3);
    // Constant components fold into one constant vector.
    std::optional<double> const cx = constantValue(args[0]);
    std::optional<double> const cy = constantValue(args[1]);
    std::optional<double> const cz = constantValue(args[2]);
    if (cx && cy && cz) {
        push(createConstant(V3{*cx, *cy, *cz}));
        return true;
    }
    Double const dx = asTyped<double>(args[0]);
    Double const dy = asTyped<double>(args[1]);
    Double const dz = asTyped<double>(args[2]);
    if (dx.isNull() || dy.isNull() || dz.isNull())
        return fail(std::make_unique<BtExpEx::ExSyntaxError>(
            __FILE__, __LINE__, BtExpMessages::getInvalidArgTypeIn3DVector(x, y, z), firstColumn,
            lastColumn));
    push(create<BtVector3Node>(dx, dy, dz));
    return true;
}

bool BtExpPxGraphBase::onVector2(LiString const& x, LiString const& y, int firstColumn, int lastColumn) {
    std::vector<Node> const args = popArguments(2);
    std::optional<double> const cx = constantValue(args[0]);
    std::optional<double> const cy = constantValue(args[1]);
    if (cx && cy) {
        push(createConstant(V2{*cx, *cy}));
        return true;
    }
    Double const dx = asTyped<double>(args[0]);
    Double const dy = asTyped<double>(args[1]);
    if (dx.isNull() || dy.isNull())
        return fail(std::make_unique<BtExpEx::ExSyntaxError>(
            __FILE__, __LINE__, BtExpMessages::getInvalidArgTypeIn2DVector(x, y), firstColumn, lastColumn));
    push(create<BtVector2Node>(dx, dy));
    return true;
}

bool BtExpPxGraphBase::pushOperator(Node node, LiString const& op, int firstColumn, int lastColumn) {
    if (node.isNull())
        return fail(
            std::make_unique<BtExpEx::ExUnknownOperator>(__FILE__, __LINE__, op, firstColumn, lastColumn));
    push(std::move(node));
    return true;
}

bool BtExpPxGraphBase::onUnaryOperator(LiString const& op, int firstColumn, int lastColumn) {
    Node const operand = pop();
    Node node;
    if (Double const d = asTyped<double>(operand); !d.isNull())
        node = BtExpOperatorBuilder().build(op, d);
    else if (Vec3 const v = asTyped<V3>(operand); !v.isNull())
        node = BtExpOperatorBuilder().build(op, v);
    else
        return fail(std::make_unique<BtExpEx::ExSyntaxError>(
            __FILE__, __LINE__, BtExpMessages::getUnsupportedArgTypeForOp("unary", op), firstColumn,
            lastColumn));
    return pushOperator(std::move(node), op, firstColumn, lastColumn);
}

bool BtExpPxGraphBase::onNumericBinary(LiString const& op, std::string const& typeError, int firstColumn,
                                       int lastColumn) {
    Node const rhs = pop();
    Node const lhs = pop();
    Node node;
    if (Double const l = asTyped<double>(lhs), r = asTyped<double>(rhs); !l.isNull() && !r.isNull())
        node = BtExpOperatorBuilder().build(op, l, r);
    else if (Vec3 const l = asTyped<V3>(lhs), r = asTyped<V3>(rhs); !l.isNull() && !r.isNull())
        node = BtExpOperatorBuilder().build(op, l, r); // knows no comparison: an unknown operator
    else
        return fail(
            std::make_unique<BtExpEx::ExSyntaxError>(__FILE__, __LINE__, typeError, firstColumn, lastColumn));
    return pushOperator(std::move(node), op, firstColumn, lastColumn);
}

bool BtExpPxGraphBase::onBinaryOperator(LiString const& op, int firstColumn, int lastColumn) {
    return onNumericBinary(op, BtExpMessages::getUnsupportedArgTypeForOp("binary", op), firstColumn,
                           lastColumn);
}

bool BtExpPxGraphBase::onComparison(LiString const& op, int firstColumn, int lastColumn) {
    return onNumericBinary(op, BtExpMessages::getUnsupportedArgTypeForFunc(op), firstColumn, lastColumn);
}

bool BtExpPxGraphBase::onBooleanBinaryOperator(LiString const& op, int firstColumn, int lastColumn) {
    Node const rhs = pop();
    Node const lhs = pop();
    Bool const l = asTyped<bool>(lhs);
    Bool const r = asTyped<bool>(rhs);
    if (l.isNull() || r.isNull())
        return fail(std::make_unique<BtExpEx::ExSyntaxError>(
            __FILE__, __LINE__, BtExpMessages::getUnsupportedArgTypeForOp("boolean binary", op), firstColumn,
            lastColumn));
    return pushOperator(BtExpOperatorBuilder().build(op, l, r), op, firstColumn, lastColumn);
}

bool BtExpPxGraphBase::onBooleanUnaryOperator(LiString const& op, int firstColumn, int lastColumn) {
    Bool const operand = asTyped<bool>(pop());
    if (operand.isNull())
        return fail(std::make_unique<BtExpEx::ExSyntaxError>(
            __FILE__, __LINE__, BtExpMessages::getUnsupportedArgTypeForOp("boolean unary", op), firstColumn,
            lastColumn));
    return pushOperator(BtExpOperatorBuilder().build(op, operand), op, firstColumn, lastColumn);
}

bool BtExpPxGraphBase::onFunction(LiString const& name, int count, int firstColumn, int lastColumn) {
    std::string const lowered = LiStringUtil::toLowerCase(name);
    std::optional<Node> node = buildFunction(lowered, popArguments(count));
    if (!node)
        return fail(std::make_unique<BtExpEx::ExSyntaxError>(
            __FILE__, __LINE__, BtExpMessages::getUnsupportedArgTypeForFunc(lowered), firstColumn,
            lastColumn));
    if (node->isNull())
        return fail(std::make_unique<BtExpEx::ExUnknownFunction>(__FILE__, __LINE__, lowered, count,
                                                                 firstColumn, lastColumn));
    push(std::move(*node));
    return true;
}

bool BtExpPxGraphBase::onFunction0(LiString const& name, int firstColumn, int lastColumn) {
    return onFunction(name, 0, firstColumn, lastColumn);
}

bool BtExpPxGraphBase::onFunction1(LiString const& name, int firstColumn, int lastColumn) {
    return onFunction(name, 1, firstColumn, lastColumn);
}

bool BtExpPxGraphBase::onFunction2(LiString const& name, int firstColumn, int lastColumn) {
    return onFunction(name, 2, firstColumn, lastColumn);
}

bool BtExpPxGraphBase::onFunction3(LiString const& name, int firstColumn, int lastColumn) {
    return onFunction(name, 3, firstColumn, lastColumn);
}

bool BtExpPxGraphBase::onFunction4(LiString const& name, int firstColumn, int lastColumn) {
    return onFunction(name, 4, firstColumn, lastColumn);
}

} // namespace Qv
