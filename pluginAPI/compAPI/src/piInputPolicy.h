#pragma once
// The value rule of one input: what values it may take, its default, its
// range or domain, whether it may be animated. The node obeys its policy:
// a value the policy refuses is never set, whoever asks.
#include "piSocketType.h"
#include "piVariant.h"
#include "rcBase.h"
#include "rcShdPtr.h"

#include <string>
#include <vector>

namespace Qv {

class PiInput;

class PiInputPolicy : public RCBase<> {
public:
    enum InterpolationType { INTERPOLATION_CONSTANT = 0, INTERPOLATION_LINEAR = 1 };
    enum ExtrapolationType { EXTRAPOLATION_CONSTANT = 0 };

    ~PiInputPolicy() override;

    virtual bool canAnimate() const = 0;
    virtual ExtrapolationType getDefaultExtrapolationType() const;
    virtual InterpolationType getDefaultInterpolationType() const;
    virtual bool isUserEditable() const;
    virtual bool isHidden() const;
    // Whether the policy rules values of sockets of that type.
    virtual bool hasSameType(PiSocketType type) const = 0;
    // Sets the input's value back to the default, as one undoable change.
    virtual void resetValue(PiInput& input) const;
    virtual std::vector<std::string> getDomainLabels() const;
    // Every value of the type is accepted as it is.
    virtual bool isPassAll() const;
    virtual bool canSetValue(PiVariant const& value) const = 0;
    // The value that is stored when `value` is accepted.
    virtual PiVariant filterValue(PiVariant const& value) const;
    virtual PiVariant getDefault() const = 0;
    // Empty (monostate) when the policy has no bound.
    virtual PiVariant getMin() const;
    virtual PiVariant getMax() const;
    // The values of an enumeration; empty for any other policy.
    virtual std::vector<PiVariant> getDomain() const;
    virtual std::string getDomainLabel(PiVariant const& value) const;

    // "from 0 to 1", "one of 0 (Low), 1 (High)", or "" when anything goes:
    // the words of a refusal.
    std::string describeAcceptedValues() const;

    // The policy of an input that has no explicit one: every value of its
    // type, animatable; for an image input, a primary image policy.
    static RCShdPtr<PiInputPolicy const> getDefaultPolicy(PiSocketType type);

protected:
    PiInputPolicy() = default;
};

} // namespace Qv
