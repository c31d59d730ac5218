#pragma once
// Failures of the image memory budget.
#include "exBase.h"

namespace Qv {

class StBufferEx : public ExBase {
public:
    using ExBase::ExBase;
    QV_EX_CLONE_RAISE(StBufferEx)

    // The image memory budget cannot hold a new buffer, even after the
    // caches gave back what they could. The reason names the label, the size
    // asked for, the budget and what is in use.
    class ExOutOfBuffers;
};

class StBufferEx::ExOutOfBuffers : public StBufferEx {
public:
    using StBufferEx::StBufferEx;
    QV_EX_CLONE_RAISE(ExOutOfBuffers)
};

} // namespace Qv
