#pragma once
// The tiles one top-level read of the image reader made or found, per proxy
// level, kept alive (with a read guard each) for the length of that read, so
// that a higher level is filtered from tiles of the level below that the
// cache may already have let go.
#include "gePoint2.h"
#include "geRectangle.h"
#include "ixReadGuard.h"
#include "lkLock.h"
#include "pxImageResults.h"

#include <optional>
#include <vector>

namespace Qv {

class BtTileKeeper {
public:
    // One rectangle of tile positions per level, level 0 first.
    explicit BtTileKeeper(std::vector<GeRectangle<int>> const& tilesPerLevel);

    int getNbLevels() const { return static_cast<int>(_levels.size()); }
    GeRectangle<int> const& getTiles(int level) const;

    // The result kept for the tile, or the invalid result (empty interval).
    PxImageResult get(int level, GePoint2<int> const& tile) const;
    // Keeps the result; a tile outside the level's rectangle is ignored.
    void put(int level, GePoint2<int> const& tile, PxImageResult const& result);

private:
    struct Level {
        GeRectangle<int> tiles;
        std::vector<PxImageResult> results;
        std::vector<std::optional<IxReadGuard>> guards;
    };
    std::optional<std::size_t> indexOf(Level const& level, GePoint2<int> const& tile) const;

    mutable LkLock _lock{"TileKeeper"};
    std::vector<Level> _levels;
};

} // namespace Qv
