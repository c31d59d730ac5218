#pragma once
// A block of pixels at a place in the image, shared by reference: copying a
// tile copies a handle, never the pixels. A tile knows its pixel format, its
// pixel region (x2 and y2 exclusive) and a fill colour, the colour of every
// pixel outside that region. Pixels are reached only through IxReadGuard and
// IxWriteGuard.
//
// Layout: rows one after another from y1 down, each starting on a multiple of
// MIN_LINE_ALIGN bytes, pixels interleaved (r, g, b, a) within a row.
#include "coColor.h"
#include "geRectangle.h"
#include "ixPixelFormat.h"
#include "ixTileMemory.h"

#include <atomic>
#include <cstddef>
#include <iosfwd>
#include <string>

namespace Qv {

namespace IxDetail {
// What tiles share. Access counts readers as positive and writers as negative
// numbers, so that one atomic word tells whether both kinds meet.
struct TileData : RCBase<> {
    IxPixelFormat format;
    GeRectangle<int> region;
    CoRgbaColorTyped<float> fill;
    std::size_t rowBytes = 0;
    IxTileMemoryPtr memory;
    mutable std::atomic<int> access{0};
};
} // namespace IxDetail

class IxTile {
public:
    static constexpr std::size_t MIN_LINE_ALIGN = 64;
    static IxTile const INVALID_TILE;

    // The invalid tile.
    IxTile() = default;
    // New, uninitialised pixels for the region; an empty region gives a valid
    // tile without pixels. Asserts a valid format.
    IxTile(IxPixelFormat const& format, GeRectangle<int> const& region,
           CoRgbaColorTyped<float> const& fill = CoRgbaColorTyped<float>::ZERO);

    bool isValid() const { return !_data.isNull(); }
    // The operations below assert isValid().
    IxPixelFormat const& getPixelFormat() const;
    GeRectangle<int> const& getPixelRegion() const;
    CoRgbaColorTyped<float> const& getFillColor() const;
    std::size_t getRowBytes() const;
    std::size_t getBufferSize() const;
    bool isEmpty() const { return getPixelRegion().isEmpty(); }

    // Bytes of one row of `width` pixels, rounded up to MIN_LINE_ALIGN.
    static std::size_t computeRowBytes(IxPixelFormat const& format, int width);
    // Bytes of the pixels of a tile of that format and region; 0 when empty.
    static std::size_t computeBufferSize(IxPixelFormat const& format, GeRectangle<int> const& region);

    // Whether both are handles of the same pixels.
    friend bool operator==(IxTile const& a, IxTile const& b) { return a._data == b._data; }

    std::string dump() const;

private:
    friend class IxTileManip;
    friend class IxTileGuard;

    explicit IxTile(RCShdPtr<IxDetail::TileData> data) : _data(std::move(data)) {}
    // Asserts a valid format.
    static RCShdPtr<IxDetail::TileData> makeData(IxPixelFormat const& format, GeRectangle<int> const& region,
                                                 IxTileMemoryPtr memory, CoRgbaColorTyped<float> const& fill);
    IxDetail::TileData const& data() const;

    RCShdPtr<IxDetail::TileData> _data;
};

std::ostream& operator<<(std::ostream& os, IxTile const& tile);

} // namespace Qv
