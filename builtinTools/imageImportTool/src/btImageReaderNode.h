#pragma once
// The processing node that turns an image sequence into tiles. The engine
// asks for one tile at a time (a time, a proxy level, a stream); files are
// read whole, in strips from the top. One read of a frame serves every tile
// of it: tile requests for a frame share one GetImageRequest, the read
// cuts each strip into the tiles it touches (in parallel), and every tile
// goes to the cache the moment it is complete. Proxy levels are filtered
// from the level below (Lanczos2, premultiplied), never read. A file that
// cannot be read gives marked error tiles, logged once, never an exception.
//
// Choices of this implementation:
// - The requests in flight are keyed by (frame index, proxy level, tile): at
//   level 0 every tile of a frame shares one key (one read gives them all);
//   a proxy tile has its own key, so that proxy tiles are filtered in parallel.
// - The component count of the output is set with setComps (the tool's image
//   format node states it downstream); pixelDepth is an IxPixelFormat::Depth.
// - A background guess examines the tiles a strip completed, as read; a
//   strip that completes none leaves the search to the next one. Tiles
//   completed while the guess is pending are finished after it, and the rest
//   of that read unpremultiplies with the guessed colour; the node itself
//   takes the colour when its controller sets it.
// - Tiles are cached under a variant text of every setting, so that a set
//   makes earlier tiles unreachable.
// - Error tiles: an I/O error is red with white bands, running out of image
//   buffers orange with black bands, running out of heap magenta with black
//   bands; every tile of the failed frame is made at once, in memory only.
// - Proxy footprint: output pixel x of level n reads pixels 2x - 3 .. 2x + 4
//   of level n - 1 (the filter's eight taps), clipped to that level's image.
#include "btTileKeeper.h"
#include "cbDispatcher.h"
#include "coColor.h"
#include "coMotionVectorInfo.h"
#include "geVector.h"
#include "ixPixelFormat.h"
#include "lkLock.h"
#include "pxImageFormatProtocol.h"
#include "pxRequest.h"
#include "pxRequestPtr.h"
#include "rational.h"
#include "rcStrongPtr.h"
#include "stImageCacheBaseNode.h"
#include "uuid.h"

#include <map>
#include <memory>
#include <tuple>
#include <utility>

namespace Qv {

class PiImageSequence;
class PiImageFile;

class BtImageReaderNode : public StImageCacheBaseNode, public PxImageFormatProtocol {
public:
    using ColorGuess = std::pair<Uuid, CoRgbColorTyped<float>> const;

    BtImageReaderNode(PxNode::Init const& init, Uuid const& storageId, PxResultProtocol::OperatingMode kind);
    ~BtImageReaderNode() override;
    void destroy() override;

    // State, set through PxSetRequest with the graph quiet.
    void setPixelDepth(unsigned int depth);
    void setComps(unsigned int comps);
    void setImageSequence(RCStrongPtr<PiImageSequence> const& sequence);
    void setImageSize(GeVector2<int> const& size);
    void setStartTime(long long const& startTime);
    void setMotionVectorInfo(CoMotionVectorInfo const& info);
    void setUnpremultiplyColor(CoRgbColorTyped<float> const& colour);
    void setUnpremultiply(bool unpremultiply);
    void setRate(Rational const& rate);
    void setPixelRatio(Rational const& ratio);
    void setFormatOptions(std::string const& options);

    CoRgbColorTyped<float> const& getUnpremultiplyColor() const { return _unpremultiplyColor; }
    // Called on the application thread with (storage id, colour) when a read guessed the background.
    CbDispatcher<ColorGuess>& getColorDispatcher() { return _colorDispatcher; }

    PxResult<PxImageFormat> getImageFormat() const override;
    PxRODResult getImageROD(PxTimeStreamContext const& context) const override;
    PxImageResult getImageResult(PxImageContext const& context) const override;

    // Whether a read of full resolution also filters every proxy level the
    // disk cache keeps; the user's "ProxiesOnRead" setting.
    static bool getProxiesOnRead();
    static void setProxiesOnRead(bool on);
    class UserSettingsObserver;

    // Error tile colours: the fill and the two diagonal bands.
    static CoRgbaColorTyped<float> const IO_ERROR_FILL;
    static CoRgbaColorTyped<float> const IO_ERROR_BANDS;
    static CoRgbaColorTyped<float> const BUFFERS_ERROR_FILL;
    static CoRgbaColorTyped<float> const BUFFERS_ERROR_BANDS;
    static CoRgbaColorTyped<float> const HEAP_ERROR_FILL;
    static CoRgbaColorTyped<float> const HEAP_ERROR_BANDS;

private:
    class GetImageRequest;
    struct PartialTile;
    struct TileInfo;
    struct FrameRead;
    struct Publisher;
    using RequestKey = std::tuple<long long, int, int, int>;

    long long indexAt(double time) const;
    bool inRange(long long index) const;
    IxPixelFormat getPixelFormat() const;
    GeRectangle<int> getImagePixels(int proxyScale) const;
    std::string describeVariant() const;
    void variantChanged();

    PxImageResult lookInCache(PxImageContext const& context) const;
    void storeTile(PxImageResult const& result, PxImageContext const& context) const;
    // The shared path of a tile: cache, else the request in flight for it, else a new one.
    PxImageResult getTileShared(PxImageContext const& context) const;
    // The body of a request: the tile, read or filtered, with every tile it made kept in `keeper`.
    PxImageResult computeRequest(PxImageContext const& context, BtTileKeeper& keeper) const;
    // Keeper, cache, then (level 0) the shared read or (above) the filter.
    PxImageResult computeTile(PxImageContext const& context, BtTileKeeper& keeper) const;
    void readFrame(PxImageContext const& context, BtTileKeeper& keeper, bool topLevel) const;
    void copyStripToTile(TileInfo const& info) const;
    void finishTile(IxTile const& tile, CoRgbColorTyped<float> const& background) const;
    void completeTile(FrameRead& read, GePoint2<int> const& position) const;
    bool guessOnStrip(FrameRead& read, GeRectangle<int> const& stripTiles) const;
    void publishGuess(CoRgbColorTyped<float> const& colour) const;
    PxImageResult computeProxyTile(PxImageContext const& context, BtTileKeeper& keeper) const;
    void makeErrorTiles(PxImageContext const& context, BtTileKeeper& keeper,
                        CoRgbaColorTyped<float> const& fill, CoRgbaColorTyped<float> const& bands) const;

    RCStrongPtr<PiImageSequence> _imageSequence;
    long long _startTime = 0;
    GeVector2<int> _imageSize{0, 0};
    unsigned int _pixelDepth = IxPixelFormat::FLOAT16;
    unsigned int _comps = IxPixelFormat::RGBA;
    Rational _rate{24, 1};
    Rational _pixelRatio{1, 1};
    bool _unpremultiply = false;
    CoRgbColorTyped<float> _unpremultiplyColor{0.0f, 0.0f, 0.0f};
    CoMotionVectorInfo _motionVectorInfo;
    std::string _formatOptions;

    mutable LkLock _requestLock{"ImageReaderGetImageRequestLock"};
    mutable std::map<RequestKey, PxRequestPtr<GetImageRequest>> _requests;
    CbDispatcher<ColorGuess> _colorDispatcher;
    // Shared with the events in flight, so that one arriving after the node is gone does nothing.
    std::shared_ptr<Publisher> _publisher;
};

} // namespace Qv
