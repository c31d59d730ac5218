#pragma once
// Results of evaluations: a validity interval, and for values the value.
#include "pxValidityInterval.h"

namespace Qv {

class PxBaseResult {
public:
    PxBaseResult() : _vi(PxValidityInterval::EMPTY) {}
    explicit PxBaseResult(PxValidityInterval const& vi) : _vi(vi) {}

    PxValidityInterval const& getVI() const { return _vi; }
    void setVI(PxValidityInterval const& vi) { _vi = vi; }
    // Narrows the given interval to this result's own.
    void reduceVI(PxValidityInterval& vi) const { vi.intersect(_vi); }

private:
    PxValidityInterval _vi;
};

template <class T>
class PxResult : public PxBaseResult {
public:
    PxResult() = default;
    PxResult(T const& value, PxValidityInterval const& vi) : PxBaseResult(vi), _value(value) {}

    T const& getValue() const { return _value; }
    void setValue(T const& value) { _value = value; }
    void set(T const& value, PxValidityInterval const& vi) {
        _value = value;
        setVI(vi);
    }

private:
    T _value{};
};

} // namespace Qv
