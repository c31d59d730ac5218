#pragma once
// The guard of commands whose changes are no user's undo step: an import
// builds a new composition on disk, which is no edit of the open one. The
// changes made while it lives are not logged.
#include "piUndoGuard.h"

namespace Qv {

class CmUndoGuardNoLog : public PiUndoGuardNoLog {
public:
    using PiUndoGuardNoLog::PiUndoGuardNoLog;
};

} // namespace Qv
