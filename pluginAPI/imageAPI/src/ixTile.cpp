#include "ixTile.h"

#include "assertions.h"
#include "ixMemResourceImp.h"

#include <fmt/format.h>
#include <ostream>

namespace Qv {

IxTile const IxTile::INVALID_TILE{};

IxTile::IxTile(IxPixelFormat const& format, GeRectangle<int> const& region,
               CoRgbaColorTyped<float> const& fill)
    : _data(makeData(format, region, nullptr, fill)) {
    if (std::size_t const size = computeBufferSize(format, region))
        _data->memory = IxMemResourceImp::allocate(size);
}

RCShdPtr<IxDetail::TileData> IxTile::makeData(IxPixelFormat const& format, GeRectangle<int> const& region,
                                              IxTileMemoryPtr memory, CoRgbaColorTyped<float> const& fill) {
    QV_ASSERT(format.isValid());
    RCShdPtr<IxDetail::TileData> data(new IxDetail::TileData);
    data->format = format;
    data->region = region;
    data->fill = fill;
    data->rowBytes = region.isEmpty() ? 0 : computeRowBytes(format, region.getWidth());
    data->memory = std::move(memory);
    return data;
}

IxDetail::TileData const& IxTile::data() const {
    QV_ASSERT(isValid());
    return *_data;
}

IxPixelFormat const& IxTile::getPixelFormat() const {
    return data().format;
}
GeRectangle<int> const& IxTile::getPixelRegion() const {
    return data().region;
}
CoRgbaColorTyped<float> const& IxTile::getFillColor() const {
    return data().fill;
}
std::size_t IxTile::getRowBytes() const {
    return data().rowBytes;
}
std::size_t IxTile::getBufferSize() const {
    return computeBufferSize(data().format, data().region);
}

std::size_t IxTile::computeRowBytes(IxPixelFormat const& format, int width) {
    std::size_t const bytes = static_cast<std::size_t>(width > 0 ? width : 0) * format.getBytesPerPixel();
    return (bytes + MIN_LINE_ALIGN - 1) / MIN_LINE_ALIGN * MIN_LINE_ALIGN;
}

std::size_t IxTile::computeBufferSize(IxPixelFormat const& format, GeRectangle<int> const& region) {
    if (region.isEmpty())
        return 0;
    return computeRowBytes(format, region.getWidth()) * static_cast<std::size_t>(region.getHeight());
}

std::string IxTile::dump() const {
    if (!isValid())
        return "INVALID_TILE";
    CoRgbaColorTyped<float> const& fill = _data->fill;
    return fmt::format("tile {} {} fill ({}, {}, {}, {})", _data->format.dump(), _data->region.dump(), fill.r,
                       fill.g, fill.b, fill.a);
}

std::ostream& operator<<(std::ostream& os, IxTile const& tile) {
    return os << tile.dump();
}

} // namespace Qv
