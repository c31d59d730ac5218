#pragma once
// Level arithmetic of the motion pyramid: how many times an image can be
// halved before its smaller side falls under a given size.

#include <initializer_list>

namespace Qv {

class BtMotioLevels {
public:
    // The smallest k with 2^k >= n; 0 for n <= 1. Counted by halving n - 1
    // in steps of 16, 8, 4, 2 and 1 bits: no loop, no floating point.
    static constexpr int log2ceil(int n) {
        if (n <= 1)
            return 0;
        unsigned v = static_cast<unsigned>(n - 1);
        int k = 0;
        for (int const step : {16, 8, 4, 2, 1}) {
            if (v >> step) {
                v >>= step;
                k += step;
            }
        }
        return k + static_cast<int>(v);
    }
};

} // namespace Qv
