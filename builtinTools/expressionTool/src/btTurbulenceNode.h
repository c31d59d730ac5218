#pragma once
// turbulence(x, n): the value of the fractal sum of n octaves of noise at
// (x, 0, 0); turbulence3(v, n): its gradient at v (see BtNoiseGenerator).
#include "btExpFuncNode.h"
#include "btNoiseGenerator.h"
#include "geVector.h"

namespace Qv {

template <class R, class A, class N>
class BtTurbulenceNode;

template <>
class BtTurbulenceNode<double, double, double> final : public BtFunc2Node<double, double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtTurbulenceNode, BtFunc2Node<double, double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double x, double order) {
            return static_cast<double>(BtNoiseGenerator::computeTurbulence(static_cast<float>(x), 0.0f, 0.0f,
                                                                           order)[BtNoiseGenerator::VALUE]);
        });
    }
};

template <>
class BtTurbulenceNode<GeVector3<double>, GeVector3<double>, double> final
    : public BtFunc2Node<GeVector3<double>, GeVector3<double>, double> {
public:
    using Vec = GeVector3<double>;
    BT_EXP_NODE_CONSTRUCTOR(BtTurbulenceNode, BtFunc2Node<Vec, Vec, double>)
    void getAnimValue(PxResult<Vec>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](Vec const& v, double order) {
            BtNoiseGenerator::Sample const s = BtNoiseGenerator::computeTurbulence(
                static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z), order);
            return Vec{s[0], s[1], s[2]};
        });
    }
};

} // namespace Qv
