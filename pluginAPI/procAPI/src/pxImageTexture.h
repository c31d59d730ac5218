#pragma once
// Reads an image at arbitrary positions, as warps do: tiles are fetched from
// the image node when a lookup first needs them, converted once to RGBA
// floats, and kept for the texture's life. A texture belongs to the request
// that made it: one worker at a time.
//
// Positions are taken to unit coordinates by the parameters' transform, then
// to pixel positions, pixel (x, y) having its centre at (x + 0.5, y + 0.5)
// of the pixel region; so with the transform u = (x + 0.5 - x1) / width,
// v = (y + 0.5 - y1) / height a lookup at a whole (x, y) gives pixel (x, y)
// exactly, with either filter. Outside the pixels, the parameters choose
// between the edge pixels and the fill colour (SdTextureParams).
#include "coColor.h"
#include "geLinearMatrix2.h"
#include "pxImageProtocol.h"
#include "sdTextureParams.h"

#include <map>
#include <utility>
#include <vector>

namespace Qv {

class PxImageTexture {
public:
    // The image at the context's time, proxy scale and stream.
    PxImageTexture(PxUPtr<PxImageProtocol const> const& image, PxImageContext const& context,
                   SdTextureParams const& params);

    // The colour at a position. The derivative matrix (how positions move per
    // output pixel) is accepted for filters that widen with it; NEAREST and
    // BILINEAR do not use it.
    CoRgbaColorTyped<double> lookup(double x, double y, GeLinearMatrix2<double> const& derivatives = {});

    // The block a caller should work in so that its lookups stay within few
    // tiles: the tile size.
    int getBlockWidth() const;
    int getBlockHeight() const;
    // The image's pixel region at the context's scale.
    GeRectangle<int> const& getPixelRegion() const { return _region; }
    // Narrows `interval` to what every read so far holds for.
    void accumulateVI(PxValidityInterval& interval) const { interval.intersect(_interval); }

private:
    struct Tile {
        GeRectangle<int> region;
        std::vector<CoRgbaColorTyped<float>> pixels;
    };

    CoRgbaColorTyped<float> texel(int x, int y);
    Tile const& fetch(GePoint2<int> const& tile);
    CoRgbaColorTyped<float> const& getFill();

    PxUPtr<PxImageProtocol const> _image;
    PxImageContext _context;
    SdTextureParams _params;
    GeRectangle<int> _region;
    PxValidityInterval _interval;
    std::map<std::pair<int, int>, Tile> _tiles;
    Tile const* _last = nullptr;
    bool _hasFill = false;
    CoRgbaColorTyped<float> _fill;
};

} // namespace Qv
