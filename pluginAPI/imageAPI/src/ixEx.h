#pragma once
// Failures of the image layer that are not programming faults.
#include "exBase.h"

namespace Qv {

struct IxEx {
    // A pixel format that an operation cannot process (COMPLEX pixels, a
    // component count the operation has no meaning for); the reason names the
    // operation and the format.
    QV_DECLARE_EX(ExUnsupportedFormat, ExBase);
};

} // namespace Qv
