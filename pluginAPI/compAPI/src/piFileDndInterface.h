#pragma once
// Files dragged onto a node and dropped there: their paths, and what the
// drop delivers to a node that takes outcomes (PiOutcomeInterface).
#include "piOutcome.h"

#include <string>
#include <vector>

namespace Qv {

class PiFileDndInterface {
public:
    virtual ~PiFileDndInterface() = default;

    // The paths, in the order of the drop.
    virtual std::vector<std::string> const& getFiles() const = 0;
    // A file item a path, in the same order.
    PiOutcome getOutcome() const;
};

} // namespace Qv
