#include "pxRequestPtr.h"

#include "rcExUtil.h"

namespace Qv {

void PxRequestPtrBase::throwNullPtrException(std::type_info const& type) {
    RCExUtil::throwExNullPtr(RCExUtil::getTypeName(type));
}

} // namespace Qv
