#include "piAppThread.h"

#include "inInitMgr.h"

namespace Qv {

bool PiAppThread::isCurrent() {
    return InInitMgr::getInstance().getInitializingThread() == std::this_thread::get_id();
}

} // namespace Qv
