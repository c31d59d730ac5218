#pragma once
// Failures of the project store.
#include "exBase.h"

namespace Qv {

struct OmEx {
    // A composition file that cannot be read: the reason names the file, the
    // line when there is one, and what is wrong there.
    QV_DECLARE_EX(ExBadComposition, ExBase);
};

} // namespace Qv
