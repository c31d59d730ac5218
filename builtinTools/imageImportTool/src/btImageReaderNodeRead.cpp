// The one place where the image reader touches a file: a frame read in
// strips, each strip cut into the tiles it touches, and what a failure leaves.
#include "assertions.h"
#include "btBackgroundGuess.h"
#include "btImageImportServices.h"
#include "btImageReaderNode.h"
#include "btImageReaderNodeParts.h"
#include "cbHandler.h"
#include "ffIOEx.h"
#include "imFormatChange.h"
#include "imMemoryBuffer.h"
#include "imageImportToolInit.h"
#include "ipPixelOps.h"
#include "ipSet.h"
#include "ipWrapperUtil.h"
#include "ixUtil.h"
#include "ixWriteGuard.h"
#include "lgLog.h"
#include "piImageFile.h"
#include "piImageSequence.h"
#include "pxEx.h"
#include "pxParallelProc.h"
#include "pxRequestMgr.h"
#include "pxWorkerBlockedGuard.h"
#include "rs2DBuffer.h"
#include "stBsBufferFactory.h"
#include "stBufferEx.h"
#include "statInterval.h"
#include "statScalar.h"
#include "statTypes.h"

#include <new>

namespace Qv {

namespace {

char const* const PARTIAL_TILE = "PartialTile";

// The strip as it lies in the image: the file's pixels centred on the origin.
ImImageConst placeInImage(ImImageConst const& strip, GePoint2<int> const& offset) {
    ImLayout const& layout = strip.getLayout();
    return ImImageConst(ImLayout(layout.getRect().getTranslated(offset.x, offset.y), layout.getFormat(),
                                 layout.getRowBytes()),
                        strip.getMemory(), strip.getOffset());
}

} // namespace

void BtImageReaderNode::readFrame(PxImageContext const& context, BtTileKeeper& keeper, bool topLevel) const {
    try {
        PxRequestMgr& mgr = PxRequestMgr::getInstance();
        FrameRead read{context, &keeper, getPixelFormat(), {}, {}, false};
        GeRectangle<int> const image = getImagePixels(0);
        long long const index = indexAt(context.getTime());
        PxValidityInterval const interval = PxValidityInterval::createFrameInterval(_rate, context.getTime());

        StatScalar const imported(StatTypes::FILE_IMPORT_SCALAR_ID, 1);
        StatInterval timing(StatTypes::FILE_IMPORT_INTERVAL_ID);
        timing.start();
        PiImageFilePtr file;
        {
            PxWorkerBlockedGuard const blocked(mgr);
            file = _imageSequence->getImageForReading(static_cast<int>(index),
                                                      ImMemoryBuffer::Factory::getInstance());
        }
        ImFormat wanted = IxUtil::ixToImPixelFormat(read.format);
        // 8 bits come from the file as 16, so that the file's own rounding is not rounded again.
        if (wanted.getPixelFormat() == ImPixelFormat::UINT8)
            wanted = ImFormat(wanted.getComps(), ImPixelFormat::UINT16);
        QV_ASSERT(wanted.getComps() >= 1 && wanted.getComps() <= 4);
        file->setFormat(wanted);
        if (!_formatOptions.empty())
            file->setFormatOptions(_formatOptions);

        ImLayout const fileLayout = file->getFileLayout();
        GeRectangle<int> const& fileRect = fileLayout.getRect();
        bool const complete =
            fileRect.getWidth() > 0 && fileRect.getHeight() > 0 && fileLayout.getFormat().getComps() > 0;
        if (!complete || fileRect.getWidth() != _imageSize.x || fileRect.getHeight() != _imageSize.y)
            throw FfIOEx::ExOpNotSupported(__FILE__, __LINE__, file->getPath().toString(),
                                           "Mismatch between read image format and stream format.");

        GePoint2<int> const offset{-(fileRect.getWidth() / 2), -(fileRect.getHeight() / 2)};
        GeRectangle<int> const placed = fileRect.getTranslated(offset.x, offset.y);
        read.tiles = convertPixelsToTiles(placed);
        read.partials.resize(static_cast<std::size_t>(read.tiles.getWidth()) *
                             static_cast<std::size_t>(read.tiles.getHeight()));
        for (int ty = read.tiles.y1; ty < read.tiles.y2; ++ty)
            for (int tx = read.tiles.x1; tx < read.tiles.x2; ++tx) {
                PartialTile& partial = read.at({tx, ty});
                partial.rect = getTilePixels({tx, ty}).getIntersection(image);
                partial.expected = static_cast<long long>(partial.rect.getWidth()) * partial.rect.getHeight();
            }
        read.wantsGuess = _unpremultiply && BtImageImportServices::isUnspecifiedBgColor(_unpremultiplyColor);
        read.background = _unpremultiplyColor;
        file->setRegion(file->getMaxRect());

        struct CopyHandler : CbHandler<TileInfo const> {
            BtImageReaderNode const& node;
            explicit CopyHandler(BtImageReaderNode const& owner) : node(owner) {}
            void call(TileInfo const& info) override { node.copyStripToTile(info); }
        } handler(*this);
        for (;;) {
            mgr.checkCancellation();
            ImImageConst strip;
            {
                PxWorkerBlockedGuard const blocked(mgr);
                strip = file->readStrip();
            }
            if (strip.isNull())
                break;
            ImImageConst const inImage = placeInImage(strip, offset);
            GeRectangle<int> const stripTiles =
                convertPixelsToTiles(inImage.getRect()).getIntersection(read.tiles);
            ImReadGuard const stripGuard(inImage);
            PxParallelProc<TileInfo> jobs(&handler, mgr);
            for (int ty = stripTiles.y1; ty < stripTiles.y2; ++ty)
                for (int tx = stripTiles.x1; tx < stripTiles.x2; ++tx)
                    jobs.addTask(TileInfo{&read, {tx, ty}, &stripGuard});
            if (jobs.getNbTasks() > 0)
                jobs.run();
            if (read.wantsGuess) {
                guessOnStrip(read, stripTiles);
                for (int ty = stripTiles.y1; ty < stripTiles.y2; ++ty)
                    for (int tx = stripTiles.x1; tx < stripTiles.x2; ++tx)
                        if (read.at({tx, ty}).pending && !read.wantsGuess)
                            completeTile(read, {tx, ty});
            }
        }
        for (PartialTile const& partial : read.partials)
            if (!partial.isComplete())
                throw FfIOEx::ExIncompleteFile(
                    __FILE__, __LINE__, file->getPath().toString(),
                    fmt::format("pixels {} of the image were not all in the file", partial.rect.dump()));
        timing.stop();
        file = PiImageFilePtr();

        if (topLevel && getProxiesOnRead())
            for (int level = 1; level < keeper.getNbLevels(); ++level) {
                GeRectangle<int> const& tiles = keeper.getTiles(level);
                for (int ty = tiles.y1; ty < tiles.y2; ++ty)
                    for (int tx = tiles.x1; tx < tiles.x2; ++tx)
                        computeProxyTile(
                            PxImageContext(context.getTime(), {tx, ty}, level, context.getStream()), keeper);
            }
        (void)interval;
    } catch (PxEx::ExRequestCancelled const&) {
        throw;
    } catch (StBufferEx::ExOutOfBuffers const&) {
        LgLog::outputEntry(LgLog::WARNING, *LgGroups::MinorLevelImageReader,
                           "Out of memory buffers while reading an image.\n");
        makeErrorTiles(context, keeper, BUFFERS_ERROR_FILL, BUFFERS_ERROR_BANDS);
    } catch (std::bad_alloc const&) {
        LgLog::outputEntry(LgLog::WARNING, *LgGroups::MinorLevelImageReader,
                           "Out of heap memory while reading an image.\n");
        makeErrorTiles(context, keeper, HEAP_ERROR_FILL, HEAP_ERROR_BANDS);
    } catch (ExBase const& error) {
        LgLog::outputEntry(LgLog::WARNING, *LgGroups::MinorLevelImageReader,
                           std::string("This I/O error has occured while reading an image:\n") +
                               error.what());
        makeErrorTiles(context, keeper, IO_ERROR_FILL, IO_ERROR_BANDS);
    }
}

void BtImageReaderNode::copyStripToTile(TileInfo const& info) const {
    FrameRead& read = *info.read;
    PartialTile& partial = read.at(info.tile);
    GeRectangle<int> const region = partial.rect.getIntersection(info.strip->getRect());
    if (region.isEmpty())
        return;
    if (!partial.tile.isValid())
        partial.tile = StBsBufferFactory::getInstance().createTile(read.format, partial.rect, PARTIAL_TILE);
    {
        IxWriteGuard const tileGuard(partial.tile);
        imFormatChange(IpWrapperUtil::convert(tileGuard), *info.strip, &region);
    }
    partial.received += static_cast<long long>(region.getWidth()) * region.getHeight();
    if (!partial.isComplete())
        return;
    if (read.wantsGuess)
        partial.pending = true;
    else
        completeTile(read, info.tile);
}

void BtImageReaderNode::completeTile(FrameRead& read, GePoint2<int> const& position) const {
    PartialTile& partial = read.at(position);
    partial.pending = false;
    finishTile(partial.tile, read.background);
    PxImageResult const result(partial.tile,
                               PxValidityInterval::createFrameInterval(_rate, read.context.getTime()));
    read.keeper->put(0, position, result);
    storeTile(result, read.context.atTile(position));
}

void BtImageReaderNode::finishTile(IxTile const& tile, CoRgbColorTyped<float> const& background) const {
    bool const unpremultiply = _unpremultiply && tile.getPixelFormat().getComps() != IxPixelFormat::RGB;
    bool const vectors = _motionVectorInfo.isValid();
    if (!unpremultiply && !vectors)
        return;
    IxWriteGuard const guard(tile);
    if (unpremultiply)
        ipUnpremultiply(guard, tile.getPixelRegion(), background);
    if (vectors)
        ipConvertMotionVectors(guard, IxReadGuard(guard), _motionVectorInfo);
}

bool BtImageReaderNode::guessOnStrip(FrameRead& read, GeRectangle<int> const& stripTiles) const {
    bool examined = false;
    for (int ty = stripTiles.y1; ty < stripTiles.y2; ++ty)
        for (int tx = stripTiles.x1; tx < stripTiles.x2; ++tx) {
            PartialTile const& partial = read.at({tx, ty});
            if (!partial.isComplete() || partial.rect.isEmpty())
                continue;
            examined = true;
            CoRgbColorTyped<float> colour{0.0f, 0.0f, 0.0f};
            if (BtBackgroundGuess::guess(IxReadGuard(partial.tile), colour)) {
                read.wantsGuess = false;
                read.background = colour;
                publishGuess(colour);
                return true;
            }
        }
    if (examined) {
        read.wantsGuess = false;
        read.background = {0.0f, 0.0f, 0.0f};
        publishGuess(read.background);
    }
    return false;
}

void BtImageReaderNode::makeErrorTiles(PxImageContext const& context, BtTileKeeper& keeper,
                                       CoRgbaColorTyped<float> const& fill,
                                       CoRgbaColorTyped<float> const& bands) const {
    // Every tile of the frame, so that its other tiles do not read the file again.
    GeRectangle<int> const image = getImagePixels(0);
    GeRectangle<int> const& tiles = keeper.getTiles(0);
    PxValidityInterval const interval = PxValidityInterval::createFrameInterval(_rate, context.getTime());
    float const x1 = static_cast<float>(image.x1);
    float const x2 = static_cast<float>(image.x2);
    float const y1 = static_cast<float>(image.y1);
    float const y2 = static_cast<float>(image.y2);
    float constexpr band = 8.0f;
    for (int ty = tiles.y1; ty < tiles.y2; ++ty)
        for (int tx = tiles.x1; tx < tiles.x2; ++tx) {
            GePoint2<int> const position{tx, ty};
            if (keeper.get(0, position).getTile().isValid())
                continue;
            GeRectangle<int> const rect = getTilePixels(position).getIntersection(image);
            IxTile tile;
            try {
                tile = StBsBufferFactory::getInstance().createTile(getPixelFormat(), rect, PARTIAL_TILE);
            } catch (StBufferEx::ExOutOfBuffers const&) {
                tile = IxTile(getPixelFormat(), rect); // the mark matters more than the budget
            }
            {
                IxWriteGuard const guard(tile);
                ipSet(guard, fill);
                Rs2DBuffer buffer(guard);
                // Two bands from corner to corner, each 8 pixels wide at its ends.
                buffer.rasterizeUnclippedTriangle({x1, y1}, {x1 + band, y1}, {x2, y2}, bands);
                buffer.rasterizeUnclippedTriangle({x1, y1}, {x2, y2}, {x2 - band, y2}, bands);
                buffer.rasterizeUnclippedTriangle({x2 - band, y1}, {x2, y1}, {x1 + band, y2}, bands);
                buffer.rasterizeUnclippedTriangle({x2 - band, y1}, {x1 + band, y2}, {x1, y2}, bands);
            }
            StatScalar const counted(StatTypes::ERROR_TILE_SCALAR_ID, 1);
            PxImageResult const result(tile, interval);
            keeper.put(0, position, result);
            setMemCachedImageResult(result, context.atTile(position));
        }
}

} // namespace Qv
