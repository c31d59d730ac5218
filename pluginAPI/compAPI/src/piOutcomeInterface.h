#pragma once
// A node that takes what a drop or a tool delivers (PiOutcome).
#include "piOutcome.h"

namespace Qv {

class PiOutcomeInterface {
public:
    virtual ~PiOutcomeInterface() = default;

    // Whether the node would take the outcome, looking at its kind and count
    // only: whether the files themselves are good, accept tells.
    virtual bool canAccept(PiOutcome const& outcome) const = 0;
    // Takes the outcome; false when it was refused, the node left as it was.
    virtual bool accept(PiOutcome const& outcome) = 0;
};

} // namespace Qv
