#pragma once
// The background colour over which a premultiplied image was made, guessed
// from its pixels as read (before any unpremultiplying). The tile is walked
// by rows from the top, left to right: the first transparent pixel is taken
// as it stands and ends the walk; opaque pixels are skipped; a partly
// transparent pixel proposes its colour divided by (1 - alpha), and the
// lowest proposal per component wins.
#include "coColor.h"
#include "ixReadGuard.h"

namespace Qv {

struct BtBackgroundGuess {
    // True when a transparent or partly transparent pixel was found; `colour`
    // is then the guess, and is left alone otherwise.
    static bool guess(IxReadGuard const& guard, CoRgbColorTyped<float>& colour);
};

} // namespace Qv
