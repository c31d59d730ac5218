#include "pxStreams.h"

#include "assertions.h"

namespace Qv {

void PxStreams::validateStream(int stream) {
    QV_ASSERT(stream >= 0 && stream < MAX_NB_STREAMS);
}

} // namespace Qv
