#pragma once
// Runs of components converted with vector instructions where the compiler
// would not find them: floats to and from 16-bit halves (F16C, eight values
// per instruction, when the processor has it; else Imath, which rounds the
// same way) and floats to 8 bits (SSE2), with the results of IxComponent.
#include "ixPixelTypes.h"

#include <cstddef>
#include <cstdint>

namespace Qv {

void ipFloatToHalf(float const* src, IxHalf* dst, std::size_t count);
void ipHalfToFloat(IxHalf const* src, float* dst, std::size_t count);
void ipFloatToUint8(float const* src, std::uint8_t* dst, std::size_t count);

} // namespace Qv
