#pragma once
// A controller that reacts to changes of its node's values: a stored value,
// or an input's constant or keyframes.
#include "piNodeEvent.h"

namespace Qv {

class PiValueChangeInterface {
public:
    virtual ~PiValueChangeInterface() = default;
    virtual void valueChanged(PiNodeEvent::ValueChanged const& event) = 0;
};

} // namespace Qv
