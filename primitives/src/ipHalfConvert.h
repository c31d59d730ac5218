#pragma once
// Runs of floats to and from 16-bit halves. On processors with F16C the
// conversion runs eight values per instruction; elsewhere through Imath. Both
// round to nearest even, so the results are the same.
#include "ixPixelTypes.h"

#include <cstddef>

namespace Qv {

void ipFloatToHalf(float const* src, IxHalf* dst, std::size_t count);
void ipHalfToFloat(IxHalf const* src, float* dst, std::size_t count);

} // namespace Qv
