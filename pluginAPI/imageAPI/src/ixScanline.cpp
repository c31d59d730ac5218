#include "ixScanline.h"

#include "ixLineConvert.h"

#include <algorithm>
#include <climits>
#include <cstdlib>

namespace Qv {

namespace {

using Rgba = CoRgbaColorTyped<float>;

// The fill colour in a scanline's form: a float line takes the component a
// one-component tile keeps (alpha), else the first (red).
template <class T>
T fillValue(IxTileGuard const& guard) {
    if constexpr (std::is_same_v<T, float>)
        return guard.getPixelFormat().getComps() == IxPixelFormat::ALPHA ? guard.getFillColor().a
                                                                         : guard.getFillColor().r;
    else
        return guard.getFillColor();
}

// Columns [x1, x2) of row y of the guard's tile into dst.
template <class T>
void convertIn(IxReadGuard const& guard, int y, int x1, int x2, T* dst) {
    IxPixelFormat const& format = guard.getPixelFormat();
    ixVisitDepth(format, "IxScanline::readFrom", [&](auto component) {
        using S = decltype(component);
        ixVisitComps(format, [&](auto comps) {
            constexpr int N = comps();
            S const* src =
                guard.getLineAs<S>(y) + static_cast<std::ptrdiff_t>(x1 - guard.getPixelRegion().x1) * N;
            if constexpr (std::is_same_v<T, float>)
                ixLineToFloat<N>(src, dst, x2 - x1);
            else
                ixLineToRgba<N>(src, dst, x2 - x1);
        });
    });
}

} // namespace

template <class T>
IxScanline<T>::IxScanline(GeInterval<int> const& interval, IxPaddingPolicy<T> const& padding)
    : _interval(interval), _padding(padding),
      _owned(interval.isEmpty() ? nullptr : new T[static_cast<std::size_t>(interval.getLength())]),
      _data(_owned.get()) {}

template <class T>
IxScanline<T>::IxScanline(GeInterval<int> const& interval, T* buffer, IxPaddingPolicy<T> const& padding)
    : _interval(interval), _padding(padding), _data(buffer) {}

template <class T>
void IxScanline<T>::readFrom(IxReadGuard const& guard, int y) {
    read(std::span<IxReadGuard const>(&guard, 1), y);
}

template <class T>
void IxScanline<T>::readFrom(std::vector<IxReadGuard> const& guards, int y) {
    read(guards, y);
}

template <class T>
void IxScanline<T>::read(std::span<IxReadGuard const> guards, int y) {
    if (_interval.isEmpty())
        return;
    // Edge replication reads the nearest row the sources have.
    int row = y;
    if (_padding.mode == IxPaddingPolicy<T>::CLAMP) {
        int top = INT_MAX;
        int bottom = INT_MIN;
        for (IxReadGuard const& guard : guards)
            if (!guard.isNull() && !guard.getPixelRegion().isEmpty()) {
                top = std::min(top, guard.getPixelRegion().y1);
                bottom = std::max(bottom, guard.getPixelRegion().y2 - 1);
            }
        if (top <= bottom)
            row = std::clamp(y, top, bottom);
    }
    // What covers the interval on that row, and whether it leaves gaps.
    int coveredX1 = INT_MAX;
    int coveredX2 = INT_MIN;
    long long coveredLength = 0;
    IxReadGuard const* first = nullptr;
    for (IxReadGuard const& guard : guards) {
        if (guard.isNull())
            continue;
        first = first ? first : &guard;
        GeRectangle<int> const& region = guard.getPixelRegion();
        if (!(region.y1 <= row && row < region.y2))
            continue;
        GeInterval<int> const overlap = _interval.getIntersection(region.getXInterval());
        if (overlap.isEmpty())
            continue;
        coveredX1 = std::min(coveredX1, overlap.x1);
        coveredX2 = std::max(coveredX2, overlap.x2);
        coveredLength += overlap.getLength();
    }
    T const padValue = _padding.mode == IxPaddingPolicy<T>::CONSTANT ? _padding.value
                       : first                                       ? fillValue<T>(*first)
                                                                     : T{};
    if (coveredX1 >= coveredX2) {
        // Nothing of the sources on this row of the interval.
        T value = padValue;
        if (_padding.mode == IxPaddingPolicy<T>::CLAMP && first) {
            // The nearest source column, on the nearest row.
            IxReadGuard const* nearest = nullptr;
            int nearestX = 0;
            for (IxReadGuard const& guard : guards) {
                GeRectangle<int> const& region = guard.isNull() ? GeRectangle<int>{} : guard.getPixelRegion();
                if (region.isEmpty() || !(region.y1 <= row && row < region.y2))
                    continue;
                int const x = std::clamp(_interval.x1, region.x1, region.x2 - 1);
                if (!nearest || std::abs(x - _interval.x1) < std::abs(nearestX - _interval.x1)) {
                    nearest = &guard;
                    nearestX = x;
                }
            }
            if (nearest)
                convertIn(*nearest, row, nearestX, nearestX + 1, &value);
        }
        std::fill(_data, _data + getLength(), value);
        return;
    }
    if (coveredLength < coveredX2 - coveredX1)
        std::fill(_data + (coveredX1 - _interval.x1), _data + (coveredX2 - _interval.x1), padValue);
    for (IxReadGuard const& guard : guards) {
        if (guard.isNull())
            continue;
        GeRectangle<int> const& region = guard.getPixelRegion();
        if (!(region.y1 <= row && row < region.y2))
            continue;
        GeInterval<int> const overlap = _interval.getIntersection(region.getXInterval());
        if (!overlap.isEmpty())
            convertIn(guard, row, overlap.x1, overlap.x2, _data + (overlap.x1 - _interval.x1));
    }
    bool const clamp = _padding.mode == IxPaddingPolicy<T>::CLAMP;
    T const left = clamp ? _data[coveredX1 - _interval.x1] : padValue;
    T const right = clamp ? _data[coveredX2 - 1 - _interval.x1] : padValue;
    std::fill(_data, _data + (coveredX1 - _interval.x1), left);
    std::fill(_data + (coveredX2 - _interval.x1), _data + getLength(), right);
}

template <class T>
void IxScanline<T>::writeTo(IxWriteGuard const& guard, int y) const {
    GeInterval<int> const overlap = _interval.getIntersection(guard.getPixelRegion().getXInterval());
    IxPixelFormat const& format = guard.getPixelFormat();
    ixVisitDepth(format, "IxScanline::writeTo", [&](auto component) {
        using D = decltype(component);
        D* line = guard.getLineAs<D>(y);
        ixVisitComps(format, [&](auto comps) {
            constexpr int N = comps();
            D* dst = line + static_cast<std::ptrdiff_t>(overlap.x1 - guard.getPixelRegion().x1) * N;
            T const* src = _data + (overlap.x1 - _interval.x1);
            if constexpr (std::is_same_v<T, float>)
                ixLineFromFloat<N>(src, dst, overlap.getLength());
            else
                ixLineFromRgba<N>(src, dst, overlap.getLength());
        });
    });
}

template class IxScanline<float>;
template class IxScanline<CoRgbaColorTyped<float>>;

} // namespace Qv
