#include "pxThreadRules.h"

#include "assertions.h"
#include "pxRequestMgr.h"

namespace Qv::PxThreadRules {

void assertNotOnWorker(char const* file, int line) {
    if (PxRequestMgr::getInstance().isWorkerThreadCurrent())
        Assertions::throwAssertionFailed(file, line, "!PxRequestMgr::getInstance().isWorkerThreadCurrent()");
}

void reportIfOnWorker(char const* file, int line) noexcept {
    if (PxRequestMgr::getInstance().isWorkerThreadCurrent())
        Assertions::reportAssertionFailed(file, line, "!PxRequestMgr::getInstance().isWorkerThreadCurrent()");
}

void assertOnWorker(char const* file, int line) {
    if (!PxRequestMgr::getInstance().isWorkerThreadCurrent())
        Assertions::throwAssertionFailed(file, line, "PxRequestMgr::getInstance().isWorkerThreadCurrent()");
}

} // namespace Qv::PxThreadRules
