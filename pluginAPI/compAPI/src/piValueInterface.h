#pragma once
// The value behind an input: a constant, or keyframes between which it is
// interpolated. Offered by the controller of the input's value node.
// Setting goes through the input's policy and is one undoable change; a
// refused value throws PiEx::ExValueRefused and changes nothing.
#include "piSocketType.h"
#include "piVariant.h"

#include <utility>
#include <vector>

namespace Qv {

struct PiKeyframe {
    double time = 0.0;
    PiVariant value;
    friend bool operator==(PiKeyframe const&, PiKeyframe const&) = default;
};

// The same operations with values of any type, for hosts that read values
// from text (files, command lines).
class PiValueInterfaceBase {
public:
    virtual ~PiValueInterfaceBase() = default;

    virtual PiSocketType getValueType() const = 0;
    virtual bool isAnimated() const = 0;
    // The value when not animated.
    virtual PiVariant getConstantVariant() const = 0;
    virtual std::vector<PiKeyframe> getKeyframeVariants() const = 0;
    virtual PiVariant getVariantAt(double time) const = 0;
    // A constant; drops the keyframes.
    virtual void setConstantVariant(PiVariant const& value) = 0;
    // Adds or replaces the keyframe at `time`. Refused unless the policy lets
    // the input be animated.
    virtual void setKeyframeVariant(double time, PiVariant const& value) = 0;
    // False when there was no keyframe at `time`.
    virtual bool removeKeyframe(double time) = 0;
    // Values as a composition stored them: neither checked by the policy nor
    // logged. Throws PiEx::ExBadValue for a value of another type.
    virtual void restoreVariants(PiVariant const& constant, std::vector<PiKeyframe> const& keyframes) = 0;
};

template <class T>
class PiValueInterface : public PiValueInterfaceBase {
public:
    virtual void setValue(T const& value) = 0;
    virtual T getValue(double time = 0.0) const = 0;
    virtual void setKeyframe(double time, T const& value) = 0;
    virtual std::vector<std::pair<double, T>> getKeyframes() const = 0;
};

} // namespace Qv
