#pragma once
// Vectors: made from numbers, and measured. Vector sums, differences and
// negation are the generic operators of btArithmeticNodes.h.
#include "btExpFuncNode.h"
#include "geVector.h"

namespace Qv {

using BtVec2 = GeVector2<double>;
using BtVec3 = GeVector3<double>;

// (x,y) when a component is not a constant.
class BtVector2Node final : public BtFunc2Node<BtVec2, double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtVector2Node, BtFunc2Node<BtVec2, double, double>)
    void getAnimValue(PxResult<BtVec2>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double x, double y) { return BtVec2{x, y}; });
    }
};

// (x,y,z) when a component is not a constant.
class BtVector3Node final : public BtFunc3Node<BtVec3, double, double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtVector3Node, BtFunc3Node<BtVec3, double, double, double>)
    void getAnimValue(PxResult<BtVec3>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double x, double y, double z) { return BtVec3{x, y, z}; });
    }
};

class BtLengthNode final : public BtFunc1Node<double, BtVec3> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtLengthNode, BtFunc1Node<double, BtVec3>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](BtVec3 const& v) { return v.getLength(); });
    }
};

class BtDotNode final : public BtFunc2Node<double, BtVec3, BtVec3> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtDotNode, BtFunc2Node<double, BtVec3, BtVec3>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](BtVec3 const& u, BtVec3 const& v) { return u.dot(v); });
    }
};

// Right-handed: cross((1,0,0), (0,1,0)) is (0,0,1).
class BtCrossNode final : public BtFunc2Node<BtVec3, BtVec3, BtVec3> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtCrossNode, BtFunc2Node<BtVec3, BtVec3, BtVec3>)
    void getAnimValue(PxResult<BtVec3>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](BtVec3 const& u, BtVec3 const& v) { return u.cross(v); });
    }
};

class BtDistanceNode final : public BtFunc2Node<double, BtVec3, BtVec3> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtDistanceNode, BtFunc2Node<double, BtVec3, BtVec3>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](BtVec3 const& u, BtVec3 const& v) { return (v - u).getLength(); });
    }
};

} // namespace Qv
