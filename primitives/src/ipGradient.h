#pragma once
#include "geAffineMatrix2.h"
#include "geRectangle.h"
#include "ixReadGuard.h"
#include "ixWriteGuard.h"

#include <vector>

namespace Qv {

// Spatial derivatives of the sources' first component (the only one of a
// one-component image) over the region (null: the whole destination): the x
// derivative in the first output component, the y derivative in the second,
// 0 in the third and 1 in alpha. With h = filterWidth / 2, the filter takes
// the differences dx = I(x + h, y) - I(x - h, y) and dy = I(x, y + h) - I(x, y - h),
// reading the sources only inside srcRegion (its edge pixels repeat outside),
// and the output is the matrix's linear part solved for them: with the
// matrix 2 * identity and width 3 it is the derivative per pixel. The
// translation plays no part. Asserts an odd width of at least 3 and a
// non-empty srcRegion; a one-component destination throws
// IxEx::ExUnsupportedFormat, a singular matrix GeEx::ExDivisionByZero.
void ipGradient(IxWriteGuard const& dst, GeRectangle<int> const* region,
                std::vector<IxReadGuard> const& sources, GeRectangle<int> const& srcRegion,
                GeAffineMatrix2<float> const& matrix, int filterWidth);

} // namespace Qv
