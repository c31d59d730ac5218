#pragma once
// Failures of the geometry records.
#include "exBase.h"

namespace Qv {

struct GeEx {
    // An integer coordinate divided by zero; the reason names the operands.
    QV_DECLARE_EX(ExDivisionByZero, ExBase);
};

} // namespace Qv
