#pragma once
// Which columns of a band of rows the blocks given so far cover. Every block
// of a band spans all its rows, so a column covered is a column of pixels
// written: the band is whole when every column is covered, and a block given
// twice, or over another, counts once.
#include <utility>
#include <vector>

namespace Qv {

class FfBandCoverage {
public:
    explicit FfBandCoverage(int width = 0) : _width(width) {}

    // Columns x1 to x2, x2 excluded.
    void add(int x1, int x2);
    bool isComplete() const;
    // The first run of columns no block covered, [first, second); empty when complete.
    std::pair<int, int> firstGap() const;

private:
    int _width;
    std::vector<std::pair<int, int>> _runs; // sorted, neither overlapping nor touching
};

} // namespace Qv
