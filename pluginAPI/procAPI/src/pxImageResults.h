#pragma once
// Results of image evaluation.
//   PxRODResult    the region of definition: a nominal rectangle (full
//                  resolution, square pixels) and its interval
//   PxImageResult  one tile of an image and its interval
#include "coColor.h"
#include "geRectangle.h"
#include "ixReadGuard.h"
#include "ixTile.h"
#include "pxResult.h"

namespace Qv {

class PxRODResult : public PxBaseResult {
public:
    PxRODResult() = default;
    PxRODResult(GeRectangle<float> const& rod, PxValidityInterval const& vi) : PxBaseResult(vi), _rod(rod) {}

    GeRectangle<float> const& getROD() const { return _rod; }
    void setROD(GeRectangle<float> const& rod) { _rod = rod; }

private:
    GeRectangle<float> _rod;
};

class PxImageResult : public PxBaseResult {
public:
    // The invalid tile, with an empty interval: what a cache miss gives.
    PxImageResult() = default;
    PxImageResult(IxTile tile, PxValidityInterval const& vi) : PxBaseResult(vi), _tile(std::move(tile)) {}

    IxTile const& getTile() const { return _tile; }
    void setTile(IxTile tile) { _tile = std::move(tile); }
    // A read guard on the tile; asserts a valid tile.
    IxReadGuard getTileGuard() const { return IxReadGuard(_tile); }
    // The tile's pixel region, format and fill; each asserts a valid tile.
    GeRectangle<int> const& getPixelRegion() const { return _tile.getPixelRegion(); }
    IxPixelFormat const& getPixelFormat() const { return _tile.getPixelFormat(); }
    CoRgbaColorTyped<float> const& getFillColor() const { return _tile.getFillColor(); }

private:
    IxTile _tile;
};

} // namespace Qv
