#pragma once
// A policy for values of one type, T in bool, int, double, string and DtTime: every
// value of the type passes unless a subclass says otherwise. The flag tells
// whether the input may be animated.
#include "piInputPolicy.h"

#include <string>
#include <type_traits>

namespace Qv {

template <class T>
class PiTypedInputPolicy : public PiInputPolicy {
public:
    using ValueType = T;

    explicit PiTypedInputPolicy(bool animatable) : _animatable(animatable) {}

    bool canAnimate() const override { return _animatable; }
    // Numbers glide between keyframes; flags and texts hold until the next.
    InterpolationType getDefaultInterpolationType() const override {
        if constexpr (std::is_arithmetic_v<T> && !std::is_same_v<T, bool>)
            return INTERPOLATION_LINEAR;
        else
            return INTERPOLATION_CONSTANT;
    }
    // A policy of doubles also rules the channels of a colour.
    bool hasSameType(PiSocketType type) const override {
        if constexpr (std::is_same_v<T, double>)
            if (type == PiSocketType::COLOR)
                return true;
        return PiVariantUtil::holdsType(PiVariant(T{}), type);
    }
    bool isPassAll() const override { return true; }
    bool canSetValue(PiVariant const& value) const override { return std::holds_alternative<T>(value); }
    PiVariant getDefault() const override { return T{}; }

private:
    bool _animatable;
};

} // namespace Qv
