#pragma once
// What a controller may do to itself or another controller beyond its own
// interfaces: send an event to the handlers subscribed to it.
#include "piNodeController.h"

namespace Qv {

class PiNodeControllerManip {
public:
    virtual ~PiNodeControllerManip() = default;

    static void signalEvent(PiNodeController& controller, PiNodeEvent const& event) {
        controller.signal(event);
    }
};

} // namespace Qv
