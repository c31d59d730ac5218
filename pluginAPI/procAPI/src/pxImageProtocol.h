#pragma once
// What an image node offers: its format, its region of definition, and its
// pixels tile by tile, evaluated on workers. All tile-grid arithmetic of the
// processing graph lives here as statics, so that every node cuts images the
// same way.
//
// Coordinates. A nominal region is a float rectangle at full resolution in
// square pixels; a pixelized region is an int rectangle (x2, y2 exclusive)
// in the image's own pixels, at a proxy scale. A pixel of aspect a is a
// square units wide, so x_pixel = x_nominal * scale / a and
// y_pixel = y_nominal * scale. Nominal to pixel rounds outward: no pixel
// that a nominal region touches is lost. The tile grid starts at pixel
// (0, 0); tile (i, j) holds pixels [i * sizeX, (i + 1) * sizeX) by
// [j * sizeY, (j + 1) * sizeY), negative positions included.
#include "coColor.h"
#include "gePoint2.h"
#include "geRectangle.h"
#include "ixReadGuard.h"
#include "ixTile.h"
#include "pxHandles.h"
#include "pxImageContext.h"
#include "pxImageFormat.h"
#include "pxImageResults.h"
#include "pxNode.h"

#include <vector>

namespace Qv {

class PxImageProtocol : public virtual PxNode {
public:
    explicit PxImageProtocol(PxNode::Init const& init) : PxNode(init) {}

    virtual PxResult<PxImageFormat> getImageFormat() const = 0;
    virtual PxRODResult getImageROD(PxTimeStreamContext const& context) const = 0;
    // One tile: the pixels of the tile at context.getTilePosition() that lie
    // in the region of definition, and the interval they hold for.
    virtual PxImageResult getImageResult(PxImageContext const& context) const = 0;
    // False when the node stands for an input that nothing feeds.
    virtual bool isChainConnected() const { return true; }
    // True when every tile holds the whole frame.
    virtual bool producesFullFrames() const { return false; }
    virtual int getNbStreams() const { return 1; }

    // Tile grid.
    static GePoint2<int> convertPixelToTile(GePoint2<int> const& pixel);
    // The tiles that cover the pixels; an empty region gives an empty one.
    static GeRectangle<int> convertPixelsToTiles(GeRectangle<int> const& pixels);
    static GeRectangle<int> convertTilesToPixels(GeRectangle<int> const& tiles);
    // The pixels of one tile.
    static GeRectangle<int> getTilePixels(GePoint2<int> const& tile);

    // Nominal and pixel coordinates; `aspect` is the pixel aspect as a
    // number (numerator / denominator), `scale` proxyScaleToFactor(p).
    static GeRectangle<int> nominalToPixelized(GeRectangle<float> const& nominal, double aspect,
                                               double scale);
    static GeRectangle<float> pixelizedToNominal(GeRectangle<int> const& pixels, double aspect, double scale);
    // A nominal region of width by height pixels of that aspect around the
    // origin: its pixels run from -(width / 2) to width - width / 2, so that
    // it pixelizes back to exactly width by height at full scale.
    static GeRectangle<float> createCenteredNominalROD(int width, int height, double aspect);
    // 1 / 2^proxyScale; exactly 1 at 0.
    static float proxyScaleToFactor(int proxyScale);
    // The pixel region of a node's region of definition for the context, and
    // the interval of the format and region it was read from.
    static GeRectangle<int> computeImagePixelRegion(PxUPtr<PxImageProtocol const> const& node,
                                                    PxTimeStreamContext const& context, int proxyScale,
                                                    PxValidityInterval& interval);

    // Input side. The tiles of `input` that cover `region` (pixels at the
    // context's scale and stream), in rows from the top, each narrowing
    // `interval`; every returned tile reads as `fill` outside its pixels,
    // whatever fill its node gave it.
    static std::vector<PxImageResult> getImageTilesInRegion(PxImageContext const& context,
                                                            PxUPtr<PxImageProtocol const> const& input,
                                                            PxValidityInterval& interval,
                                                            GeRectangle<int> const& region,
                                                            CoRgbaColorTyped<float> const& fill);
    static std::vector<IxReadGuard> getGuards(std::vector<PxImageResult> const& results);
    // A tile over `region` with the guard's pixels where they overlap it and
    // the guard's fill colour elsewhere.
    static IxTile createPaddedImage(IxReadGuard const& guard, GeRectangle<int> const& region);
    // The smallest region holding the pixels of every result.
    static GeRectangle<int> computePixelRegion(std::vector<PxImageResult> const& results);
    // The colour an input shows outside its pixels for the context.
    static CoRgbaColorTyped<float> getImageFillColor(PxImageContext const& context,
                                                     PxUPtr<PxImageProtocol const> const& input);

protected:
    // New pixels for a tile of this node's pixel format over `region`.
    IxTile allocateImageBuffer(PxImageContext const& context, GeRectangle<int> const& region) const;
    IxTile allocateImageBuffer(PxImageContext const& context, CoRgbaColorTyped<float> const& fill,
                               GeRectangle<int> const& region) const;
    // A tile of this node's format without pixels: what a tile outside the
    // region of definition gives.
    IxTile allocateEmptyImageBuffer() const;
    IxTile allocateEmptyImageBuffer(CoRgbaColorTyped<float> const& fill) const;
};

} // namespace Qv
