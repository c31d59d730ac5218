#pragma once
// A node that gives a value of type T at a time, with the interval for which
// the value holds. Instantiated for bool, int, double, GeVector2<double>,
// GeVector3<double> and CoRgbColorTyped<float>.
#include "pxNode.h"
#include "pxResult.h"
#include "pxTimeContext.h"

namespace Qv {

template <class T>
class PxAnimValueProtocol : public virtual PxNode {
public:
    using ValueType = T;

    explicit PxAnimValueProtocol(PxNode::Init const& init) : PxNode(init) {}

    // Worker-side evaluation: fills `result` for the time of `context`.
    virtual void getAnimValue(PxResult<T>& result, PxTimeContext const& context) const = 0;
};

} // namespace Qv
