#pragma once
// Failures of the processing graph's requests.
#include "exBase.h"

namespace Qv {

struct PxEx {
    // A request, or one of the requests it was posted from, was cancelled.
    // Node code lets it pass; it reaches whoever waits for the request.
    QV_DECLARE_EX(ExRequestCancelled, ExBase);
};

} // namespace Qv
