#pragma once
// The lines of a separable 2:1 reduction, one output tile at a time. Output
// row y is filtered from source rows 2y - 3 .. 2y + 4 (TAPS rows around the
// pair 2y, 2y + 1 that it replaces), each first filtered horizontally to the
// output's columns. The cache asks for each source row once, in order, keeps
// only the TAPS latest, and holds the output rows until flush():
//
//   while (cache.hasNext()) {
//       while (cache.needsSourceLine())
//           filterRow(cache.getSourceRow(), cache.getHorizontalBuffer());
//       filterTaps(cache.getNext(), cache.getVerticalBuffer());
//   }
//   cache.flush();  // then cache.getLine(y) for every output row
#include "ixScanline.h"

#include <vector>

namespace Qv {

template <class T>
class IxScanlineCache {
public:
    static constexpr int TAPS = 8;
    static int getFirstTapRow(int outputRow) { return 2 * outputRow - TAPS / 2 + 1; }

    // Source rows outside srcRegion's rows are never asked for: they read as zero.
    IxScanlineCache(GeRectangle<int> const& dstRegion, GeRectangle<int> const& srcRegion);

    bool needsSourceLine() const;
    // The source row that the next horizontal buffer stands for.
    int getSourceRow() const { return _nextSourceRow; }
    // The buffer, over the output's columns, of row getSourceRow(), for the
    // caller to fill now; the next call moves to the following row.
    IxScanline<T>& getHorizontalBuffer();

    bool hasNext() const { return _nextOutputRow < _dst.y2; }
    // The TAPS horizontal lines of the next output row, top first; asserts
    // that every source row they need was given.
    T const* const* getNext();
    // The output row of the last getNext(), for the caller to fill.
    IxScanline<T>& getVerticalBuffer();
    int getVerticalRow() const { return _nextOutputRow - 1; }

    // Ends the pass: asserts every output row was made, and frees the source lines.
    void flush();
    IxScanline<T> const& getLine(int y) const;
    IxScanline<T>& getLine(int y);

private:
    GeRectangle<int> _dst;
    GeRectangle<int> _src;
    std::vector<IxScanline<T>> _ring;
    std::vector<int> _ringRow;
    IxScanline<T> _zero;
    std::vector<IxScanline<T>> _output;
    std::vector<T const*> _taps;
    int _nextSourceRow;
    int _nextOutputRow;
    bool _flushed = false;
};

extern template class IxScanlineCache<CoRgbaColorTyped<float>>;
extern template class IxScanlineCache<float>;

} // namespace Qv
