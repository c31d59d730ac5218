#pragma once
// What a scanline read yields where its source has no pixels:
//   FILL_COLOR  the source tile's fill colour (what the tile says lies there)
//   CONSTANT    a value of the caller's choosing
//   CLAMP       the nearest pixel the sources have (edge replication)
#include "coColor.h"

namespace Qv {

template <class T>
struct IxPaddingPolicy {
    enum Mode { FILL_COLOR, CONSTANT, CLAMP };

    Mode mode = FILL_COLOR;
    T value{};

    static IxPaddingPolicy fillColor() { return {FILL_COLOR, T{}}; }
    static IxPaddingPolicy constant(T const& value) { return {CONSTANT, value}; }
    static IxPaddingPolicy clamp() { return {CLAMP, T{}}; }
};

} // namespace Qv
