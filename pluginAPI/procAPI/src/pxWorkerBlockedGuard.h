#pragma once
// Brackets, for a scope, work that blocks the calling worker on something
// other than the processor (file input), so that the pool runs another
// worker meanwhile.
#include "pxRequestMgr.h"

namespace Qv {

class PxWorkerBlockedGuard {
public:
    explicit PxWorkerBlockedGuard(PxRequestMgr& mgr = PxRequestMgr::getInstance()) : _mgr(mgr) {
        _mgr.workerBlocked();
    }
    ~PxWorkerBlockedGuard() noexcept(false) { _mgr.workerUnblocked(); }
    PxWorkerBlockedGuard(PxWorkerBlockedGuard const&) = delete;
    PxWorkerBlockedGuard& operator=(PxWorkerBlockedGuard const&) = delete;

private:
    PxRequestMgr& _mgr;
};

} // namespace Qv
