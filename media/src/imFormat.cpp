#include "imFormat.h"

#include "assertions.h"

#include <fmt/format.h>

namespace Qv {

ImFormat::ImFormat(int comps, ImPixelFormat pixelFormat) : _comps(comps), _pixelFormat(pixelFormat) {
    QV_ASSERT(comps >= 1 && comps <= 4);
}

std::string ImFormat::dump() const {
    return fmt::format("{} x {}", _comps, _pixelFormat.dump());
}

} // namespace Qv
