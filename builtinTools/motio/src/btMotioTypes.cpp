#include "btMotioTypes.h"

#include "assertions.h"

namespace Qv {

BtMotioTypes::VectorType BtMotioTypes::next(VectorType v) {
    QV_ASSERT(v < NB_VECTOR_TYPES);
    return static_cast<VectorType>(v + 1);
}

} // namespace Qv
