#pragma once
// What a tool protocol may do to the controllers it makes.
#include "piToolInterface.h"

namespace Qv {

class PiToolInterfaceManip {
public:
    virtual ~PiToolInterfaceManip() = default;

    static void addInputPolicy(PiToolInterface& controller, std::string const& name,
                               RCShdPtr<PiInputPolicy const> const& policy) {
        controller.addInputPolicy(name, policy);
    }
};

} // namespace Qv
