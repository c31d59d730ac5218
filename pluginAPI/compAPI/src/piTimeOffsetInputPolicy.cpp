#include "piTimeOffsetInputPolicy.h"

namespace Qv {

RCShdPtr<PiTimeOffsetInputPolicy const> PiTimeOffsetInputPolicy::getInstance() {
    static RCShdPtr<PiTimeOffsetInputPolicy const> const instance(new PiTimeOffsetInputPolicy);
    return instance;
}

} // namespace Qv
