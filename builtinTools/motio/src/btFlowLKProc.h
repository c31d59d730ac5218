#pragma once
// One tile of Lucas-Kanade flow. Per pixel, the 2x2 normal equations of the
// optical-flow constraint gx * u + gy * v + t = 0 over a 5x5 window are
// solved for the increment (u, v), clamped to one pixel:
//   A = sum gx*gx, B = sum gx*gy, C = sum gy*gy, D = -sum gx*t, E = -sum gy*t,
//   [A B; B C] (u, v) = (D, E) when |det| > 1e-5, else the smallest (u, v)
//   with (A + B) u + (B + C) v = D + E, else (0, 0).
// The window sums are kept rolling along each row: the window column sums of
// each product, and running totals that lose the column leaving the window
// and gain the one entering it.
#include "geRectangle.h"
#include "ixReadGuard.h"
#include "ixTile.h"

#include <vector>

namespace Qv {

class BtFlowLKProc {
public:
    static constexpr int WINDOW_SIZE = 5;
    static constexpr int BORDER = 2; // half the window

    // Fills `output`, whose pixel region dstRgn must lie in srcRgn, from the
    // gradient (gx, gy: first two components) and the time derivative (first
    // component), both read over srcRgn. A pixel whose window lies in srcRgn
    // gets (u, v, 0, 0); the other pixels, those of the two-pixel band inside
    // srcRgn's edge, get (0, 0, 0, 1): dstRgn must hold every computed pixel.
    // A srcRgn narrower or lower than the window gives (0, 0, 0, 0) throughout.
    static void process(IxTile const& output, std::vector<IxReadGuard> const& gradient,
                        std::vector<IxReadGuard> const& derivative, GeRectangle<int> const& srcRgn);
};

} // namespace Qv
