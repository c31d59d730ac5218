#pragma once
// Failures of the text helpers: each reason quotes the text that was refused.
#include "exBase.h"

namespace Qv {

struct LiStringEx {
    // A text that should hold a number does not, or the number does not fit.
    QV_DECLARE_EX(ExBadNumber, ExBase);
    // An argument that makes the operation meaningless, such as an empty token.
    QV_DECLARE_EX(ExInvalidArgument, ExBase);
    // A tokenizer was asked for a token after its last one.
    QV_DECLARE_EX(ExNoMoreTokens, ExBase);
};

} // namespace Qv
