#pragma once
// Failures of the message catalogues: a bad catalogue file, or a message used
// in a way its catalogue cannot serve.
#include "exBase.h"

namespace Qv {

struct MsgEx {
    // A catalogue file that cannot be read; the reason names the path.
    QV_DECLARE_EX(ExCatalogueNotFound, ExBase);
    // A catalogue line that is not `ID = text`; the reason names the file and the line.
    QV_DECLARE_EX(ExMalformedCatalogue, ExBase);
    // An id that no open catalogue holds; the reason names the id and the catalogues.
    QV_DECLARE_EX(ExUnknownId, ExBase);
    // A subscription used before its catalogue resolved it; the reason names the id.
    QV_DECLARE_EX(ExNotSubscribed, ExBase);
};

} // namespace Qv
