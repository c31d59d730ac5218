#pragma once
// Failures of the project store.
#include "exBase.h"

namespace Qv {

struct OmEx {
    // A composition file that cannot be read: the reason names the file, the
    // line when there is one, and what is wrong there.
    QV_DECLARE_EX(ExBadComposition, ExBase);

    // Root of the failures of projects, folders, entries and versions. Every
    // reason names the file, folder or entry at fault.
    QV_DECLARE_EX(ExStoreError, ExBase);
    // A name that cannot be an entry or a version (OmUtil::isValidName).
    QV_DECLARE_EX(ExInvalidName, ExStoreError);
    // An entry, a version or a project is already there under that name.
    QV_DECLARE_EX(ExNameInUse, ExStoreError);
    // A directory without a project marker.
    QV_DECLARE_EX(ExNotAProject, ExStoreError);
    // A project marker or an entry's side file that cannot be read, or that
    // does not hold what the store writes.
    QV_DECLARE_EX(ExBadEntry, ExStoreError);
    // A version that is not one of the composition's.
    QV_DECLARE_EX(ExUnknownVersion, ExStoreError);
    // The disk refused a write; what was there before is left whole.
    QV_DECLARE_EX(ExWriteFailed, ExStoreError);
};

} // namespace Qv
