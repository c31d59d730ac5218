#include "btExpOperatorBuilder.h"

#include "assertions.h"
#include "btArithmeticNodes.h"
#include "btLogicNodes.h"

namespace Qv {

using namespace BtExpNodeTypes;

namespace {
using V3 = GeVector3<double>;
}

Node BtExpOperatorBuilder::build(std::string_view op, Double const& val) const {
    QV_ASSERT(!val.isNull());
    return op == "-" ? create<BtUnarySubtractNode<double>>(val) : Node();
}

Node BtExpOperatorBuilder::build(std::string_view op, Vec3 const& vec) const {
    QV_ASSERT(!vec.isNull());
    return op == "-" ? create<BtUnarySubtractNode<V3>>(vec) : Node();
}

Node BtExpOperatorBuilder::build(std::string_view op, Double const& lhs, Double const& rhs) const {
    QV_ASSERT(!lhs.isNull());
    QV_ASSERT(!rhs.isNull());
    static struct {
        std::string_view op;
        Node (*create)(Double const&, Double const&);
    } const table[] = {
        {"+", create<BtBinaryAddNode<double>, Double, Double>},
        {"-", create<BtBinarySubtractNode<double>, Double, Double>},
        {"*", create<BtBinaryMultiplyNode, Double, Double>},
        {"/", create<BtBinaryDivideNode, Double, Double>},
        {"^", create<BtPowNode, Double, Double>},
        {"%", create<BtIntegerModNode, Double, Double>},
        {"==", create<BtIsEqualNode, Double, Double>},
        {"!=", create<BtIsNotEqualNode, Double, Double>},
        {"<", create<BtIsLessNode, Double, Double>},
        {"<=", create<BtIsLessOrEqualNode, Double, Double>},
        {">", create<BtIsGreaterNode, Double, Double>},
        {">=", create<BtIsGreaterOrEqualNode, Double, Double>},
    };
    for (auto const& entry : table)
        if (entry.op == op)
            return entry.create(lhs, rhs);
    return {};
}

Node BtExpOperatorBuilder::build(std::string_view op, Vec3 const& vec1, Vec3 const& vec2) const {
    QV_ASSERT(!vec1.isNull());
    QV_ASSERT(!vec2.isNull());
    if (op == "+")
        return create<BtBinaryAddNode<V3>>(vec1, vec2);
    if (op == "-")
        return create<BtBinarySubtractNode<V3>>(vec1, vec2);
    return {};
}

Node BtExpOperatorBuilder::build(std::string_view op, Bool const& val) const {
    QV_ASSERT(!val.isNull());
    return op == "!" ? create<BtLogicalNotNode>(val) : Node();
}

Node BtExpOperatorBuilder::build(std::string_view op, Bool const& lhs, Bool const& rhs) const {
    QV_ASSERT(!lhs.isNull());
    QV_ASSERT(!rhs.isNull());
    if (op == "&&")
        return create<BtLogicalAndNode>(lhs, rhs);
    if (op == "||")
        return create<BtLogicalOrNode>(lhs, rhs);
    return {};
}

} // namespace Qv
