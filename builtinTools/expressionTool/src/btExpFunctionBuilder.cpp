#include "btExpFunctionBuilder.h"

#include "assertions.h"
#include "btAlignNode.h"
#include "btAngleNodes.h"
#include "btArithmeticNodes.h"
#include "btClockCurveNodes.h"
#include "btConditionalNode.h"
#include "btCurrentTimeNode.h"
#include "btEvalNode.h"
#include "btLookAtNode.h"
#include "btMathFunctionNodes.h"
#include "btMinMaxNodes.h"
#include "btNoiseNode.h"
#include "btRandNode.h"
#include "btRelAngleNode.h"
#include "btRelScaleNode.h"
#include "btTurbulenceNode.h"
#include "btVectorNodes.h"

namespace Qv {

using namespace BtExpNodeTypes;

namespace {

using V3 = GeVector3<double>;

// One signature's names and the nodes they make.
template <class... Args>
struct Entry {
    std::string_view name;
    Node (*create)(Args const&...);
};

template <class... Args, std::size_t N>
Node lookUp(Entry<Args...> const (&table)[N], std::string_view name, Args const&... args) {
    for (Entry<Args...> const& entry : table)
        if (entry.name == name)
            return entry.create(args...);
    return {};
}

} // namespace

Node BtExpFunctionBuilder::build(std::string_view name) const {
    return name == "t" ? create<BtCurrentTimeNode>() : Node();
}

Node BtExpFunctionBuilder::build(std::string_view name, Double const& argumentNode) const {
    QV_ASSERT(!argumentNode.isNull());
    static Entry<Double> const table[] = {
        {"rand", create<BtRandNode, Double>},
        {"noise", create<BtNoiseNode<double>, Double>},
        {"round", create<BtRoundNode, Double>},
        {"ceil", create<BtCeilNode, Double>},
        {"floor", create<BtFloorNode, Double>},
        {"trunc", create<BtTruncNode, Double>},
        {"degrees", create<BtRadToDegNode, Double>},
        {"radians", create<BtDegToRadNode, Double>},
        {"sin", create<BtSineNode, Double>},
        {"cos", create<BtCosineNode, Double>},
        {"tan", create<BtTangentNode, Double>},
        {"asin", create<BtArcSineNode, Double>},
        {"acos", create<BtArcCosineNode, Double>},
        {"atan", create<BtArcTangentNode, Double>},
        {"abs", create<BtAbsNode, Double>},
        {"sign", create<BtSignNode, Double>},
        {"sqrt", create<BtSqrtNode, Double>},
        {"log", create<BtLogNode, Double>},
        {"ln", create<BtLnNode, Double>},
        {"exp", create<BtExpNode, Double>},
    };
    return lookUp(table, name, argumentNode);
}

Node BtExpFunctionBuilder::build(std::string_view name, Vec3 const& argumentNode) const {
    QV_ASSERT(!argumentNode.isNull());
    static Entry<Vec3> const table[] = {
        {"noise3", create<BtNoiseNode<V3>, Vec3>},
        {"length", create<BtLengthNode, Vec3>},
    };
    return lookUp(table, name, argumentNode);
}

Node BtExpFunctionBuilder::build(std::string_view name, Double const& argumentNode1,
                                 Double const& argumentNode2) const {
    QV_ASSERT(!argumentNode1.isNull());
    QV_ASSERT(!argumentNode2.isNull());
    static Entry<Double, Double> const table[] = {
        {"truerand", create<BtTrueRandNode, Double, Double>},
        {"turbulence", create<BtTurbulenceNode<double, double, double>, Double, Double>},
        {"atan2", create<BtArcTangent2Node, Double, Double>},
        {"pow", create<BtPowNode, Double, Double>},
        {"mod", create<BtModNode, Double, Double>},
        {"min", create<BtMinNode, Double, Double>},
        {"max", create<BtMaxNode, Double, Double>},
        {"average", create<BtAverageNode, Double, Double>},
        {"easein", create<BtEaseInNode, Double, Double>},
        {"easeout", create<BtEaseOutNode, Double, Double>},
        {"eval", create<BtEvalNode<double>, Double, Double>},
    };
    return lookUp(table, name, argumentNode1, argumentNode2);
}

Node BtExpFunctionBuilder::build(std::string_view name, Vec3 const& argumentNode1,
                                 Vec3 const& argumentNode2) const {
    QV_ASSERT(!argumentNode1.isNull());
    QV_ASSERT(!argumentNode2.isNull());
    static Entry<Vec3, Vec3> const table[] = {
        {"dot", create<BtDotNode, Vec3, Vec3>},
        {"cross", create<BtCrossNode, Vec3, Vec3>},
        {"distance", create<BtDistanceNode, Vec3, Vec3>},
    };
    return lookUp(table, name, argumentNode1, argumentNode2);
}

Node BtExpFunctionBuilder::build(std::string_view name, Vec3 const& argumentNode1,
                                 Double const& argumentNode2) const {
    QV_ASSERT(!argumentNode1.isNull());
    QV_ASSERT(!argumentNode2.isNull());
    static Entry<Vec3, Double> const table[] = {
        {"turbulence3", create<BtTurbulenceNode<V3, V3, double>, Vec3, Double>},
        {"eval", create<BtEvalNode<V3>, Vec3, Double>},
    };
    return lookUp(table, name, argumentNode1, argumentNode2);
}

Node BtExpFunctionBuilder::build(std::string_view name, Double const& argumentNode1,
                                 Double const& argumentNode2, Double const& argumentNode3) const {
    QV_ASSERT(!argumentNode1.isNull());
    QV_ASSERT(!argumentNode2.isNull());
    QV_ASSERT(!argumentNode3.isNull());
    static Entry<Double, Double, Double> const table[] = {
        {"bell", create<BtGaussianNode, Double, Double, Double>},
        {"min", create<BtMin3Node, Double, Double, Double>},
        {"max", create<BtMax3Node, Double, Double, Double>},
        {"average", create<BtAverage3Node, Double, Double, Double>},
        {"sinus", create<BtSinusNode, Double, Double, Double>},
        {"square", create<BtSquareNode, Double, Double, Double>},
    };
    return lookUp(table, name, argumentNode1, argumentNode2, argumentNode3);
}

Node BtExpFunctionBuilder::build(std::string_view name, Vec3 const& argumentNode1, Vec3 const& argumentNode2,
                                 Vec3 const& argumentNode3) const {
    QV_ASSERT(!argumentNode1.isNull());
    QV_ASSERT(!argumentNode2.isNull());
    QV_ASSERT(!argumentNode3.isNull());
    return name == "lookat" ? create<BtLookAtNode>(argumentNode1, argumentNode2, argumentNode3) : Node();
}

Node BtExpFunctionBuilder::build(std::string_view name, Vec3 const& argumentNode1, Vec3 const& argumentNode2,
                                 Double const& argumentNode3) const {
    QV_ASSERT(!argumentNode1.isNull());
    QV_ASSERT(!argumentNode2.isNull());
    QV_ASSERT(!argumentNode3.isNull());
    return name == "align" ? create<BtAlignNode>(argumentNode1, argumentNode2, argumentNode3) : Node();
}

Node BtExpFunctionBuilder::build(std::string_view name, Bool const& argumentNode1,
                                 Double const& argumentNode2, Double const& argumentNode3) const {
    QV_ASSERT(!argumentNode1.isNull());
    QV_ASSERT(!argumentNode2.isNull());
    QV_ASSERT(!argumentNode3.isNull());
    return name == "if" ? create<BtConditionalNode<double>>(argumentNode1, argumentNode2, argumentNode3)
                        : Node();
}

Node BtExpFunctionBuilder::build(std::string_view name, Bool const& argumentNode1, Vec3 const& argumentNode2,
                                 Vec3 const& argumentNode3) const {
    QV_ASSERT(!argumentNode1.isNull());
    QV_ASSERT(!argumentNode2.isNull());
    QV_ASSERT(!argumentNode3.isNull());
    return name == "if" ? create<BtConditionalNode<V3>>(argumentNode1, argumentNode2, argumentNode3) : Node();
}

Node BtExpFunctionBuilder::build(std::string_view name, Vec2 const& argumentNode1, Vec2 const& argumentNode2,
                                 Vec2 const& argumentNode3, Vec2 const& argumentNode4) const {
    QV_ASSERT(!argumentNode1.isNull());
    QV_ASSERT(!argumentNode2.isNull());
    QV_ASSERT(!argumentNode3.isNull());
    QV_ASSERT(!argumentNode4.isNull());
    static Entry<Vec2, Vec2, Vec2, Vec2> const table[] = {
        {"relscale", create<BtRelScaleNode, Vec2, Vec2, Vec2, Vec2>},
        {"relangle", create<BtRelAngleNode, Vec2, Vec2, Vec2, Vec2>},
    };
    return lookUp(table, name, argumentNode1, argumentNode2, argumentNode3, argumentNode4);
}

} // namespace Qv
