#pragma once
// An on-off input.
#include "piTypedInputPolicy.h"

namespace Qv {

class PiSwitchInputPolicy : public PiTypedInputPolicy<bool> {
public:
    static RCShdPtr<PiSwitchInputPolicy const> create(bool defaultValue, bool animatable, bool userEditable) {
        return RCShdPtr<PiSwitchInputPolicy const>(
            new PiSwitchInputPolicy(defaultValue, animatable, userEditable));
    }

    PiVariant getDefault() const override { return _default; }
    bool isUserEditable() const override { return _userEditable; }

private:
    PiSwitchInputPolicy(bool defaultValue, bool animatable, bool userEditable)
        : PiTypedInputPolicy<bool>(animatable), _default(defaultValue), _userEditable(userEditable) {}

    bool _default;
    bool _userEditable;
};

} // namespace Qv
