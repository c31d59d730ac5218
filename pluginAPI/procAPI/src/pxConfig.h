#pragma once
// The tile grid of image evaluation: every image is cut into tiles of one
// fixed size, 256 by 256 pixels unless QV_TILE_SIZE (a number of pixels,
// 1 to 8192, for square tiles) says otherwise, so that tests can use small
// tiles that cross every tile border.
namespace Qv {

class PxConfig {
public:
    // Read from the environment on first use.
    static int getTileSizeX();
    static int getTileSizeY();
    // For a host that sets the grid itself, before any image is evaluated:
    // tiles already computed keep the size they were made with.
    static void setTileSize(int sizeX, int sizeY);

    static constexpr int DEFAULT_TILE_SIZE = 256;
    static constexpr int MAX_TILE_SIZE = 8192;
};

} // namespace Qv
