#include "piOutput.h"

#include "piInput.h"

namespace Qv {

std::vector<RCShdPtr<PiInput>> PiOutput::getConnectedInputs() const {
    std::vector<RCShdPtr<PiInput>> inputs;
    for (PiInput* input : _inputs)
        inputs.emplace_back(input);
    return inputs;
}

} // namespace Qv
