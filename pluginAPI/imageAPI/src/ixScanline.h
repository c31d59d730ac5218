#pragma once
// One row of pixels over an interval of columns, in float form: T is float
// (one component: the tile's first) or CoRgbaColorTyped<float>. Scanlines
// carry rows between tiles and line kernels: readFrom converts a tile row
// (or the rows of several tiles) in, padding what no tile covers; writeTo
// converts the part inside a tile out.
#include "geInterval.h"
#include "ixPaddingPolicy.h"
#include "ixReadGuard.h"
#include "ixWriteGuard.h"

#include <memory>
#include <span>
#include <vector>

namespace Qv {

template <class T>
class IxScanline {
public:
    IxScanline() = default;
    explicit IxScanline(GeInterval<int> const& interval, IxPaddingPolicy<T> const& padding = {});
    // Over a buffer of interval.getLength() values that the caller owns.
    IxScanline(GeInterval<int> const& interval, T* buffer, IxPaddingPolicy<T> const& padding = {});

    IxScanline(IxScanline&&) noexcept = default;
    IxScanline& operator=(IxScanline&&) noexcept = default;

    GeInterval<int> const& getInterval() const { return _interval; }
    int getLength() const { return _interval.getLength(); }
    IxPaddingPolicy<T> const& getPaddingPolicy() const { return _padding; }
    void setPaddingPolicy(IxPaddingPolicy<T> const& padding) { _padding = padding; }

    // The values, the first at column getInterval().x1.
    T* getData() { return _data; }
    T const* getData() const { return _data; }
    // The value at column x, which must lie in the interval (not checked: hot paths).
    T& operator[](int x) { return _data[x - _interval.x1]; }
    T const& operator[](int x) const { return _data[x - _interval.x1]; }

    // Row y of the guard's tile over the interval; padding elsewhere.
    void readFrom(IxReadGuard const& guard, int y);
    // Row y of the tiles that cover it; padding where none does (the fill
    // colour is the first tile's). Where tiles overlap, the later one wins.
    void readFrom(std::vector<IxReadGuard> const& guards, int y);
    // The part of the interval inside the tile, to its row y (which must be in it).
    void writeTo(IxWriteGuard const& guard, int y) const;

private:
    void read(std::span<IxReadGuard const> guards, int y);

    GeInterval<int> _interval;
    IxPaddingPolicy<T> _padding;
    std::unique_ptr<T[]> _owned;
    T* _data = nullptr;
};

extern template class IxScanline<float>;
extern template class IxScanline<CoRgbaColorTyped<float>>;

} // namespace Qv
