#pragma once
// The splat of the forward warp: every source pixel moves along its vector
// and lands, bilinearly weighted, on the four target pixels around where it
// arrives. The values go into an accumulation tile and the weights into a
// coverage tile, both FLOAT32 and two pixels wider than the frame on each
// side: a pixel that leaves the frame piles up in that band, which is never
// returned, so the row loop needs no test per pixel.
#include "geRectangle.h"
#include "ixReadGuard.h"
#include "ixTile.h"
#include "ixWriteGuard.h"

#include <cstddef>

namespace Qv {

class BtFwdWarpProc {
public:
    // acc: ALPHA or RGBA, cov: ALPHA, both FLOAT32 over the same region. The
    // vectors are multiplied by warpCoef before use.
    BtFwdWarpProc(IxTile const& acc, IxTile const& cov, float warpCoef);

    // Splats the pixels of srcRgn of `image`, each moved by the vector at the
    // same pixel of `vectors` (red x, green y; (0, 0) where the vector tile
    // has no pixel). srcRgn must lie within the accumulation region less its
    // band.
    void splat(IxReadGuard const& image, IxReadGuard const& vectors, GeRectangle<int> const& srcRgn);

    GeRectangle<int> const& getDstRgn() const { return _dstRgn; }

private:
    template <int N>
    void splatRows(IxReadGuard const& image, IxReadGuard const& vectors, GeRectangle<int> const& srcRgn);

    IxWriteGuard _acc;
    IxWriteGuard _cov;
    GeRectangle<int> _dstRgn;
    // Where a moved pixel may land: x1, y1, x2 - 2, y2 - 2 of the region, so
    // that its right and lower neighbours stay inside.
    float _boundX1;
    float _boundY1;
    float _boundX2;
    float _boundY2;
    // Row strides in floats.
    std::size_t _accStride;
    std::size_t _covStride;
    float _warpCoef;
    bool _rgba;
};

} // namespace Qv
