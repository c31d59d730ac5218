#pragma once
// A shift in time, in frames: any integer, animatable.
#include "piTypedInputPolicy.h"

namespace Qv {

class PiTimeOffsetInputPolicy : public PiTypedInputPolicy<int> {
public:
    static RCShdPtr<PiTimeOffsetInputPolicy const> getInstance();

private:
    PiTimeOffsetInputPolicy() : PiTypedInputPolicy<int>(true) {}
};

} // namespace Qv
