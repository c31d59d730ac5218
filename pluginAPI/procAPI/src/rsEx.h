#pragma once
// Failures of the render buffers.
#include "exBase.h"

namespace Qv {

struct RsEx {
    // A shape that cannot be drawn, such as a vertex with an infinite or NaN
    // coordinate; the reason gives the vertices.
    QV_DECLARE_EX(ExBadGeometry, ExBase);
};

} // namespace Qv
