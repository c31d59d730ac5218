#pragma once
// Curves of the clock: the value depends on the request's time as well as on
// the arguments. Only square narrows its interval around the time; sinus,
// easein, easeout and bell report their children's intervals alone, and
// whoever shows them asks again for every frame.
#include "btExpFuncNode.h"
#include "btExpMath.h"
#include "funcUtil.h"

#include <cmath>

namespace Qv {

// bell(center, width, height) at the request's time: FuncUtil::computeGaussCurve.
class BtGaussianNode final : public BtFunc3Node<double, double, double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtGaussianNode, BtFunc3Node<double, double, double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        double const t = context.getTime();
        evaluate(result, context,
                 [t](double x, double y, double z) { return FuncUtil::computeGaussCurve(t, x, y, z); });
    }
};

// easein(a, b): from 0 at time a to 1 at time b along the symmetric S-curve.
// a equal to b is not guarded: the curve receives an infinity or NaN.
class BtEaseInNode final : public BtFunc2Node<double, double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtEaseInNode, BtFunc2Node<double, double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        double const t = context.getTime();
        evaluate(result, context, [t](double a, double b) { return curve(t, a, b); });
    }
    static double curve(double t, double a, double b) {
        return FuncUtil::computeSCurve((t - a) / (b - a), 0.5, 0.5);
    }
};

// easeout(a, b): 1 minus easein(a, b).
class BtEaseOutNode final : public BtFunc2Node<double, double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtEaseOutNode, BtFunc2Node<double, double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        double const t = context.getTime();
        evaluate(result, context, [t](double a, double b) { return 1.0 - BtEaseInNode::curve(t, a, b); });
    }
};

// sinus(p, m, o): sin((t - o) / safe(p)) * m, the sine taken of radians: the
// period is 2 pi p.
class BtSinusNode final : public BtFunc3Node<double, double, double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtSinusNode, BtFunc3Node<double, double, double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        double const t = context.getTime();
        evaluate(result, context, [t](double p, double m, double o) {
            return std::sin((t - o) / BtExpMath::safeDivisor(p)) * m;
        });
    }
};

// square(p, m, o): +m or -m, the sign of the sine of period p shifted by o;
// +m where the sine is 0. Valid for a tick around the time.
class BtSquareNode final : public BtFunc3Node<double, double, double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtSquareNode, BtFunc3Node<double, double, double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        double const t = context.getTime();
        evaluate(result, context, [t](double p, double m, double o) {
            double const sine = std::sin((t - o) * 6.283185307179586 / BtExpMath::safeDivisor(p));
            return sine < 0.0 ? -m : m;
        });
        PxValidityInterval vi = result.getVI();
        result.setVI(vi.intersect(BtExpMath::getTimeDependentInterval(t)));
    }
};

} // namespace Qv
