#include "btTileKeeper.h"

#include "assertions.h"

namespace Qv {

BtTileKeeper::BtTileKeeper(std::vector<GeRectangle<int>> const& tilesPerLevel) {
    _levels.reserve(tilesPerLevel.size());
    for (GeRectangle<int> const& tiles : tilesPerLevel) {
        std::size_t const count = tiles.isEmpty() ? 0
                                                  : static_cast<std::size_t>(tiles.getWidth()) *
                                                        static_cast<std::size_t>(tiles.getHeight());
        Level& level = _levels.emplace_back();
        level.tiles = tiles;
        level.results.resize(count);
        level.guards.resize(count);
    }
}

GeRectangle<int> const& BtTileKeeper::getTiles(int level) const {
    QV_ASSERT(level >= 0 && level < getNbLevels());
    return _levels[static_cast<std::size_t>(level)].tiles;
}

std::optional<std::size_t> BtTileKeeper::indexOf(Level const& level, GePoint2<int> const& tile) const {
    if (!level.tiles.contains(tile.x, tile.y))
        return std::nullopt;
    return static_cast<std::size_t>(tile.y - level.tiles.y1) *
               static_cast<std::size_t>(level.tiles.getWidth()) +
           static_cast<std::size_t>(tile.x - level.tiles.x1);
}

PxImageResult BtTileKeeper::get(int level, GePoint2<int> const& tile) const {
    if (level < 0 || level >= getNbLevels())
        return {};
    LkLock::Guard const guard(_lock);
    Level const& entry = _levels[static_cast<std::size_t>(level)];
    std::optional<std::size_t> const index = indexOf(entry, tile);
    return index ? entry.results[*index] : PxImageResult();
}

void BtTileKeeper::put(int level, GePoint2<int> const& tile, PxImageResult const& result) {
    if (level < 0 || level >= getNbLevels() || !result.getTile().isValid())
        return;
    // The guard is taken outside the lock: it only counts a reader on the tile.
    std::optional<IxReadGuard> readGuard(std::in_place, result.getTile());
    LkLock::Guard const guard(_lock);
    Level& entry = _levels[static_cast<std::size_t>(level)];
    std::optional<std::size_t> const index = indexOf(entry, tile);
    if (!index)
        return;
    entry.results[*index] = result;
    entry.guards[*index].swap(readGuard);
}

} // namespace Qv
