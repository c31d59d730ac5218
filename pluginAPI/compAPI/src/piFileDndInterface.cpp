#include "piFileDndInterface.h"

namespace Qv {

PiOutcome PiFileDndInterface::getOutcome() const {
    PiOutcome outcome;
    for (std::string const& file : getFiles())
        outcome.addFile(file);
    return outcome;
}

} // namespace Qv
