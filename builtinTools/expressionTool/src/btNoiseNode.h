#pragma once
// noise(x): the value of the noise at (x, 0, 0); noise3(v): the gradient of
// the noise at v. Coordinates are narrowed to floats, as the noise is single
// precision (see BtNoiseGenerator).
#include "btExpFuncNode.h"
#include "btNoiseGenerator.h"
#include "geVector.h"

namespace Qv {

template <class T>
class BtNoiseNode;

template <>
class BtNoiseNode<double> final : public BtFunc1Node<double, double> {
public:
    BT_EXP_NODE_CONSTRUCTOR(BtNoiseNode, BtFunc1Node<double, double>)
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](double x) {
            return static_cast<double>(
                BtNoiseGenerator::getNoise(static_cast<float>(x), 0.0f, 0.0f)[BtNoiseGenerator::VALUE]);
        });
    }
};

template <>
class BtNoiseNode<GeVector3<double>> final : public BtFunc1Node<GeVector3<double>, GeVector3<double>> {
public:
    using Vec = GeVector3<double>;
    BT_EXP_NODE_CONSTRUCTOR(BtNoiseNode, BtFunc1Node<Vec, Vec>)
    void getAnimValue(PxResult<Vec>& result, PxTimeContext const& context) const override {
        evaluate(result, context, [](Vec const& v) {
            BtNoiseGenerator::Sample const s = BtNoiseGenerator::getNoise(
                static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z));
            return Vec{s[0], s[1], s[2]};
        });
    }
};

} // namespace Qv
