#include "pxConfig.h"

#include "assertions.h"
#include "pxSettings.h"

#include <atomic>

namespace Qv {

namespace {
struct TileSize {
    std::atomic<int> x;
    std::atomic<int> y;
    TileSize() {
        int const size =
            PxSettings::readCount("QV_TILE_SIZE", PxConfig::DEFAULT_TILE_SIZE, PxConfig::MAX_TILE_SIZE);
        x.store(size);
        y.store(size);
    }
};

TileSize& tileSize() {
    static TileSize size;
    return size;
}
} // namespace

int PxConfig::getTileSizeX() {
    return tileSize().x.load(std::memory_order_relaxed);
}

int PxConfig::getTileSizeY() {
    return tileSize().y.load(std::memory_order_relaxed);
}

void PxConfig::setTileSize(int sizeX, int sizeY) {
    QV_ASSERT(sizeX >= 1 && sizeX <= MAX_TILE_SIZE && sizeY >= 1 && sizeY <= MAX_TILE_SIZE);
    tileSize().x.store(sizeX, std::memory_order_relaxed);
    tileSize().y.store(sizeY, std::memory_order_relaxed);
}

} // namespace Qv
