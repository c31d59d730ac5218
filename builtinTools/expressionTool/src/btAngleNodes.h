#pragma once
// Angle conversions and trigonometry. Angles are degrees in the language; the
// inverse functions give degrees and clamp what lies outside their domain.
#include "btExpFuncNode.h"
#include "btExpMath.h"

#include <cmath>

namespace Qv {

// radians(x)
class BtDegToRadNode final : public BtFunc1Node<double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtDegToRadNode, BtFunc1Node<double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double x) { return x * BtExpMath::DEG_TO_RAD; });
    }
};

// degrees(x)
class BtRadToDegNode final : public BtFunc1Node<double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtRadToDegNode, BtFunc1Node<double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double x) { return x * BtExpMath::RAD_TO_DEG; });
    }
};

class BtSineNode final : public BtFunc1Node<double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtSineNode, BtFunc1Node<double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double x) { return std::sin(x * BtExpMath::DEG_TO_RAD); });
    }
};

class BtCosineNode final : public BtFunc1Node<double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtCosineNode, BtFunc1Node<double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double x) { return std::cos(x * BtExpMath::DEG_TO_RAD); });
    }
};

// Every whole multiple of 90 degrees gives 0, the poles at 90 and 270 included.
class BtTangentNode final : public BtFunc1Node<double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtTangentNode, BtFunc1Node<double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double x) {
            return std::fmod(x, 90.0) == 0.0 ? 0.0 : std::tan(x * BtExpMath::DEG_TO_RAD);
        });
    }
};

// -90 at and below -1, 90 at and above 1.
class BtArcSineNode final : public BtFunc1Node<double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtArcSineNode, BtFunc1Node<double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double x) {
            if (x <= -1.0)
                return -90.0;
            if (x >= 1.0)
                return 90.0;
            return std::asin(x) * BtExpMath::RAD_TO_DEG;
        });
    }
};

// 180 at and below -1, 0 at and above 1.
class BtArcCosineNode final : public BtFunc1Node<double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtArcCosineNode, BtFunc1Node<double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double x) {
            if (x <= -1.0)
                return 180.0;
            if (x >= 1.0)
                return 0.0;
            return std::acos(x) * BtExpMath::RAD_TO_DEG;
        });
    }
};

class BtArcTangentNode final : public BtFunc1Node<double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtArcTangentNode, BtFunc1Node<double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double x) { return std::atan(x) * BtExpMath::RAD_TO_DEG; });
    }
};

// atan2(x,y): the angle of the point (y, x), that is atan2 of the first and
// second argument in that order; 0 when both are within EPS of zero.
class BtArcTangent2Node final : public BtFunc2Node<double, double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtArcTangent2Node, BtFunc2Node<double, double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double x, double y) {
            if (std::fabs(x) <= BtExpMath::EPS && std::fabs(y) <= BtExpMath::EPS)
                return 0.0;
            return std::atan2(x, y) * BtExpMath::RAD_TO_DEG;
        });
    }
};

} // namespace Qv
