#pragma once
// The kernel of the backward warp: each output pixel reads the texture at
// its own position moved by its vector, out(x, y) = image(x + V.x, y + V.y),
// all four components. It works in blocks of the texture's block size, so
// that the lookups of a block stay within few tiles of the image.
#include "ixReadGuard.h"
#include "ixWriteGuard.h"
#include "pxImageTexture.h"

namespace Qv {

class BtBwdWarpProc {
public:
    // `vectors` holds the displacement of each output pixel (red x, green y);
    // where it has none the pixel reads its own position.
    BtBwdWarpProc(PxImageTexture& texture, IxReadGuard const& vectors, IxWriteGuard const& out);

    // Every pixel of the output's region.
    void run();

private:
    PxImageTexture& _texture;
    IxReadGuard const& _vectors;
    IxWriteGuard const& _out;
};

} // namespace Qv
