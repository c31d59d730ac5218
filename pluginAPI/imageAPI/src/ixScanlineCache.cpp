#include "ixScanlineCache.h"

#include "assertions.h"

#include <algorithm>

namespace Qv {

template <class T>
IxScanlineCache<T>::IxScanlineCache(GeRectangle<int> const& dstRegion, GeRectangle<int> const& srcRegion)
    : _dst(dstRegion), _src(srcRegion), _zero(dstRegion.getXInterval()),
      _nextSourceRow(std::max(srcRegion.y1, getFirstTapRow(dstRegion.y1))), _nextOutputRow(dstRegion.y1) {
    for (int i = 0; i < TAPS; ++i)
        _ring.emplace_back(dstRegion.getXInterval());
    _ringRow.assign(TAPS, srcRegion.y1 - TAPS - 1);
    std::fill(_zero.getData(), _zero.getData() + _zero.getLength(), T{});
    for (int y = dstRegion.y1; y < dstRegion.y2; ++y)
        _output.emplace_back(dstRegion.getXInterval());
    _taps.resize(TAPS);
}

template <class T>
bool IxScanlineCache<T>::needsSourceLine() const {
    if (!hasNext() || _nextSourceRow >= _src.y2)
        return false;
    return _nextSourceRow < getFirstTapRow(_nextOutputRow) + TAPS;
}

template <class T>
IxScanline<T>& IxScanlineCache<T>::getHorizontalBuffer() {
    QV_ASSERT(needsSourceLine());
    int const row = _nextSourceRow++;
    int const slot = ((row % TAPS) + TAPS) % TAPS;
    _ringRow[static_cast<std::size_t>(slot)] = row;
    return _ring[static_cast<std::size_t>(slot)];
}

template <class T>
T const* const* IxScanlineCache<T>::getNext() {
    QV_ASSERT(hasNext() && !needsSourceLine());
    int const first = getFirstTapRow(_nextOutputRow);
    for (int i = 0; i < TAPS; ++i) {
        int const row = first + i;
        int const slot = ((row % TAPS) + TAPS) % TAPS;
        bool const present = _src.y1 <= row && row < _src.y2;
        if (present)
            QV_ASSERT(_ringRow[static_cast<std::size_t>(slot)] == row);
        _taps[static_cast<std::size_t>(i)] =
            present ? _ring[static_cast<std::size_t>(slot)].getData() : _zero.getData();
    }
    ++_nextOutputRow;
    return _taps.data();
}

template <class T>
IxScanline<T>& IxScanlineCache<T>::getVerticalBuffer() {
    QV_ASSERT(_nextOutputRow > _dst.y1);
    return _output[static_cast<std::size_t>(_nextOutputRow - 1 - _dst.y1)];
}

template <class T>
void IxScanlineCache<T>::flush() {
    QV_ASSERT(!hasNext());
    _ring.clear();
    _flushed = true;
}

template <class T>
IxScanline<T> const& IxScanlineCache<T>::getLine(int y) const {
    QV_ASSERT(_flushed && _dst.y1 <= y && y < _dst.y2);
    return _output[static_cast<std::size_t>(y - _dst.y1)];
}

template <class T>
IxScanline<T>& IxScanlineCache<T>::getLine(int y) {
    QV_ASSERT(_flushed && _dst.y1 <= y && y < _dst.y2);
    return _output[static_cast<std::size_t>(y - _dst.y1)];
}

template class IxScanlineCache<CoRgbaColorTyped<float>>;
template class IxScanlineCache<float>;

} // namespace Qv
