#pragma once
// Composes a vector field with an increment field: out = V + I(x + V), with
// the increments read at the position each vector points to. An increment
// measured on the warped image belongs where the vector lands, so this is
// composition, not a plain sum. Out is (V.x + I.x, V.y + I.y, 0, 1).
#include "coColor.h"
#include "ixReadGuard.h"
#include "ixWriteGuard.h"
#include "pxImageTexture.h"

namespace Qv {

class BtVectorIncProc {
public:
    // Asserts that `out` covers exactly the vectors' pixels.
    BtVectorIncProc(IxReadGuard const& vec, IxWriteGuard const& out);

    // In blocks of the texture's size, with a cancellation check per block.
    void process(PxImageTexture& increments);

private:
    IxReadGuard _vec;
    IxWriteGuard _out;
};

} // namespace Qv
