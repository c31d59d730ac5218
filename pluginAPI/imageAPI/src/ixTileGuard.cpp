#include "ixTileGuard.h"

#include "assertions.h"
#include "ixReadGuard.h"
#include "ixWriteGuard.h"

namespace Qv {

namespace {

void beginRead(std::atomic<int>& access) {
    int current = access.load(std::memory_order_relaxed);
    do {
        bool const isBeingWritten = current < 0;
        QV_ASSERT(!isBeingWritten);
    } while (!access.compare_exchange_weak(current, current + 1, std::memory_order_acquire));
}

void beginWrite(std::atomic<int>& access) {
    int current = access.load(std::memory_order_relaxed);
    do {
        bool const isBeingRead = current > 0;
        QV_ASSERT(!isBeingRead);
    } while (!access.compare_exchange_weak(current, current - 1, std::memory_order_acquire));
}

// A checked guard refuses the invalid tile with the text every operation on it gives.
IxTile const& requireValid(IxTile const& tile) {
    if (!tile.isValid())
        Assertions::throwAssertionFailed(__FILE__, __LINE__, "isValid()");
    return tile;
}

} // namespace

IxTileGuard::IxTileGuard(IxTile const& tile, Access access) : _tile(tile), _access(access) {
    if (!_tile.isValid()) {
        // Only the unchecked guards get here: they map nothing.
        QV_ASSERT(access == Access::NONE);
        return;
    }
    IxDetail::TileData const& data = *_tile._data;
    _origin = data.memory.isNull() ? nullptr : data.memory->getData();
    _rowBytes = data.rowBytes;
    _pixelBytes = data.format.getBytesPerPixel();
    _x1 = data.region.x1;
    _y1 = data.region.y1;
    _y2 = data.region.isEmpty() ? data.region.y1 : data.region.y2;
    acquire();
}

IxTileGuard::IxTileGuard(IxTileGuard const& other)
    : _tile(other._tile), _access(other._access), _origin(other._origin), _rowBytes(other._rowBytes),
      _pixelBytes(other._pixelBytes), _x1(other._x1), _y1(other._y1), _y2(other._y2) {
    acquire();
}

IxTileGuard& IxTileGuard::operator=(IxTileGuard const& other) {
    if (this != &other) {
        IxTileGuard copy(other);
        release();
        _tile = copy._tile;
        _access = copy._access;
        _origin = copy._origin;
        _rowBytes = copy._rowBytes;
        _pixelBytes = copy._pixelBytes;
        _x1 = copy._x1;
        _y1 = copy._y1;
        _y2 = copy._y2;
        acquire();
    }
    return *this;
}

IxTileGuard::~IxTileGuard() {
    release();
}

void IxTileGuard::acquire() {
    if (_access == Access::READ)
        beginRead(_tile._data->access);
    else if (_access == Access::WRITE)
        beginWrite(_tile._data->access);
}

void IxTileGuard::release() {
    if (_access == Access::READ)
        _tile._data->access.fetch_sub(1, std::memory_order_release);
    else if (_access == Access::WRITE)
        _tile._data->access.fetch_add(1, std::memory_order_release);
    _access = Access::NONE;
}

std::byte* IxTileGuard::lineAddress(int y) const {
    QV_ASSERT(_y1 <= y && y < _y2);
    return _origin + static_cast<std::ptrdiff_t>(y - _y1) * static_cast<std::ptrdiff_t>(_rowBytes);
}

std::byte* IxTileGuard::pixelAddress(int x, int y) const {
    QV_ASSERT(getPixelRegion().contains(x, y));
    return lineAddress(y) + static_cast<std::ptrdiff_t>(x - _x1) * static_cast<std::ptrdiff_t>(_pixelBytes);
}

IxReadGuard::IxReadGuard(IxTile const& tile) : IxTileGuard(requireValid(tile), Access::READ) {}
IxReadGuard::IxReadGuard(IxWriteGuard const& writeGuard) : IxTileGuard(writeGuard.getTile(), Access::NONE) {}
IxReadGuard::IxReadGuard(IxTile const& tile, NoCheck) : IxTileGuard(tile, Access::NONE) {}

IxWriteGuard::IxWriteGuard(IxTile const& tile) : IxTileGuard(requireValid(tile), Access::WRITE) {}
IxWriteGuard::IxWriteGuard(IxTile const& tile, NoCheck) : IxTileGuard(tile, Access::NONE) {}

} // namespace Qv
