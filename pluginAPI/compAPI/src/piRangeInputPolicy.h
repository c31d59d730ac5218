#pragma once
// A numeric input bounded by a minimum and a maximum, T in int and double.
// Values outside the range are refused, not clamped. The two flags are kept
// as given for the editors that read them; the range itself binds always.
#include "piTypedInputPolicy.h"

#include <utility>

namespace Qv {

template <class T>
class PiRangeInputPolicy : public PiTypedInputPolicy<T> {
public:
    static RCShdPtr<PiRangeInputPolicy const> create(T min, T max, T defaultValue, bool first, bool second) {
        return RCShdPtr<PiRangeInputPolicy const>(
            new PiRangeInputPolicy(min, max, defaultValue, first, second));
    }

    bool isPassAll() const override { return false; }
    bool canSetValue(PiVariant const& value) const override {
        T const* v = std::get_if<T>(&value);
        return v && _min <= *v && *v <= _max;
    }
    PiVariant getDefault() const override { return _default; }
    PiVariant getMin() const override { return _min; }
    PiVariant getMax() const override { return _max; }
    std::pair<bool, bool> getFlags() const { return _flags; }

private:
    PiRangeInputPolicy(T min, T max, T defaultValue, bool first, bool second)
        : PiTypedInputPolicy<T>(true), _min(min), _max(max), _default(defaultValue), _flags(first, second) {}

    T _min;
    T _max;
    T _default;
    std::pair<bool, bool> _flags;
};

} // namespace Qv
