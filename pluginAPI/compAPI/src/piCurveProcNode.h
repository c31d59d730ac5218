#pragma once
// The processing node of a value node: evaluates its curve at the time
// asked. The curve is replaced through a set request, so that no evaluation
// sees half of a change; every replacement invalidates the nodes above.
#include "piCurve.h"
#include "pxAnimValueProtocol.h"

#include <mutex>

namespace Qv {

template <class T>
class PiCurveProcNode : public PxAnimValueProtocol<T> {
public:
    PiCurveProcNode(PxNode::Init const& init, PiCurve<T> curve)
        : PxNode(init), PxAnimValueProtocol<T>(init), _curve(std::move(curve)) {}

    void getAnimValue(PxResult<T>& result, PxTimeContext const& context) const override {
        std::lock_guard lock(_lock);
        result = _curve.evaluate(context.getTime());
    }

    void setCurve(PiCurve<T> const& curve) {
        {
            std::lock_guard lock(_lock);
            _curve = curve;
        }
        this->invalidate(PxValidityInterval::FULL, 0);
    }

private:
    mutable std::mutex _lock;
    PiCurve<T> _curve;
};

} // namespace Qv
