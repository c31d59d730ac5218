#pragma once
// Failures of file system access. Every reason names the path concerned, so a
// caller can show it as it is.
#include "exBase.h"

namespace Qv {

struct OsFileEx {
    // Root of the family.
    QV_DECLARE_EX(ExFileError, ExBase);
    // The path names no entry of the kind needed (a missing directory, a
    // directory where a file is expected) or is not a usable name.
    QV_DECLARE_EX(ExInvalidPath, ExFileError);
    // A file that must be read or renamed is not there.
    QV_DECLARE_EX(ExFileNotFound, ExInvalidPath);
    // The system refused or failed an operation: permissions, a full disk...
    QV_DECLARE_EX(ExIOError, ExFileError);
};

} // namespace Qv
