#include "btImageReaderNode.h"

#include "assertions.h"
#include "btImageReaderNodeParts.h"
#include "dtTime.h"
#include "evEventManager.h"
#include "evRequestEvent.h"
#include "imageImportToolInit.h"
#include "ixPixelUtil.h"
#include "lgLog.h"
#include "piImageSequence.h"
#include "pxEx.h"
#include "pxRequestMgr.h"
#include "pxValidityInterval.h"

#include <atomic>
#include <fmt/format.h>

namespace Qv {

namespace {
std::atomic<bool> gProxiesOnRead{false};
} // namespace

CoRgbaColorTyped<float> const BtImageReaderNode::IO_ERROR_FILL{1.0f, 0.0f, 0.0f, 1.0f};
CoRgbaColorTyped<float> const BtImageReaderNode::IO_ERROR_BANDS{1.0f, 1.0f, 1.0f, 1.0f};
CoRgbaColorTyped<float> const BtImageReaderNode::BUFFERS_ERROR_FILL{1.0f, 0.5f, 0.0f, 1.0f};
CoRgbaColorTyped<float> const BtImageReaderNode::BUFFERS_ERROR_BANDS{0.0f, 0.0f, 0.0f, 1.0f};
CoRgbaColorTyped<float> const BtImageReaderNode::HEAP_ERROR_FILL{1.0f, 0.0f, 1.0f, 1.0f};
CoRgbaColorTyped<float> const BtImageReaderNode::HEAP_ERROR_BANDS{0.0f, 0.0f, 0.0f, 1.0f};

BtImageReaderNode::BtImageReaderNode(PxNode::Init const& init, Uuid const& storageId,
                                     PxResultProtocol::OperatingMode kind)
    : PxNode(init), StImageCacheBaseNode(init, storageId, kind), PxImageFormatProtocol(init),
      _publisher(std::make_shared<Publisher>()) {
    _publisher->node = this;
    variantChanged();
}

BtImageReaderNode::~BtImageReaderNode() {
    std::lock_guard const lock(_publisher->mutex);
    _publisher->node = nullptr;
}

void BtImageReaderNode::destroy() {
    {
        std::lock_guard const lock(_publisher->mutex);
        _publisher->node = nullptr;
    }
    _imageSequence = RCStrongPtr<PiImageSequence>();
    StImageCacheBaseNode::destroy();
}

bool BtImageReaderNode::getProxiesOnRead() {
    return gProxiesOnRead.load(std::memory_order_relaxed);
}

void BtImageReaderNode::setProxiesOnRead(bool on) {
    gProxiesOnRead.store(on, std::memory_order_relaxed);
}

// --- state

void BtImageReaderNode::setPixelDepth(unsigned int depth) {
    _pixelDepth = depth;
    variantChanged();
}

void BtImageReaderNode::setComps(unsigned int comps) {
    _comps = comps;
    variantChanged();
}

void BtImageReaderNode::setImageSequence(RCStrongPtr<PiImageSequence> const& sequence) {
    _imageSequence = sequence;
    variantChanged();
}

void BtImageReaderNode::setImageSize(GeVector2<int> const& size) {
    _imageSize = size;
    variantChanged();
}

void BtImageReaderNode::setStartTime(long long const& startTime) {
    _startTime = startTime;
    variantChanged();
}

void BtImageReaderNode::setMotionVectorInfo(CoMotionVectorInfo const& info) {
    _motionVectorInfo = info;
    variantChanged();
}

void BtImageReaderNode::setUnpremultiplyColor(CoRgbColorTyped<float> const& colour) {
    _unpremultiplyColor = colour;
    variantChanged();
}

void BtImageReaderNode::setUnpremultiply(bool unpremultiply) {
    _unpremultiply = unpremultiply;
    variantChanged();
}

void BtImageReaderNode::setRate(Rational const& rate) {
    _rate = rate;
    variantChanged();
}

void BtImageReaderNode::setPixelRatio(Rational const& ratio) {
    _pixelRatio = ratio;
    variantChanged();
}

void BtImageReaderNode::setFormatOptions(std::string const& options) {
    _formatOptions = options;
    variantChanged();
}

std::string BtImageReaderNode::describeVariant() const {
    // Every setting that changes pixels; the sequence by its path, since the
    // storage id already names the files and their date.
    return fmt::format("{}|{}|{}x{}|{}|{}/{}|{}/{}|{}|{},{},{}|{}|{}",
                       _imageSequence.isNull() ? "" : _imageSequence->getPath(), _startTime, _imageSize.x,
                       _imageSize.y, _pixelDepth * 10 + _comps, _rate.getNumerator(), _rate.getDenominator(),
                       _pixelRatio.getNumerator(), _pixelRatio.getDenominator(), _unpremultiply,
                       _unpremultiplyColor.r, _unpremultiplyColor.g, _unpremultiplyColor.b,
                       _motionVectorInfo.dump(), _formatOptions);
}

void BtImageReaderNode::variantChanged() {
    setCacheVariant(describeVariant());
}

// --- geometry and time

IxPixelFormat BtImageReaderNode::getPixelFormat() const {
    return IxPixelFormat(static_cast<IxPixelFormat::Comps>(_comps),
                         static_cast<IxPixelFormat::Depth>(_pixelDepth), _pixelRatio);
}

PxResult<PxImageFormat> BtImageReaderNode::getImageFormat() const {
    return PxResult<PxImageFormat>(PxImageFormat(getPixelFormat(), _rate), PxValidityInterval::FULL);
}

long long BtImageReaderNode::indexAt(double time) const {
    return DtTime::fromSeconds(time, _rate).getIndex().getValue() - _startTime;
}

bool BtImageReaderNode::inRange(long long index) const {
    return !_imageSequence.isNull() && index >= 0 && index < _imageSequence->getNbImages();
}

GeRectangle<int> BtImageReaderNode::getImagePixels(int proxyScale) const {
    double const aspect = _pixelRatio.getDouble();
    return nominalToPixelized(createCenteredNominalROD(_imageSize.x, _imageSize.y, aspect), aspect,
                              proxyScaleToFactor(proxyScale));
}

PxRODResult BtImageReaderNode::getImageROD(PxTimeStreamContext const& context) const {
    double const time = context.getTime();
    long long const index = indexAt(time);
    if (inRange(index))
        return PxRODResult(
            createCenteredNominalROD(_imageSize.x, _imageSize.y, static_cast<float>(_pixelRatio.getDouble())),
            PxValidityInterval::createFrameInterval(_rate, time));
    // Outside the frames nothing changes for a year either way.
    double const rate = _rate.getDouble();
    if (index < 0) {
        PxValidityInterval const before =
            PxValidityInterval::createFrameInterval(_rate, static_cast<double>(_startTime - 1) / rate);
        return PxRODResult({}, PxValidityInterval(PxValidityInterval::TIME_MIN, before.getEnd()));
    }
    long long const end = _startTime + (_imageSequence.isNull() ? 0 : _imageSequence->getNbImages());
    PxValidityInterval const after =
        PxValidityInterval::createFrameInterval(_rate, static_cast<double>(end) / rate);
    return PxRODResult({}, PxValidityInterval(after.getStart(), PxValidityInterval::TIME_MAX));
}

// --- tiles

PxImageResult BtImageReaderNode::getImageResult(PxImageContext const& context) const {
    IxPixelFormat const pf = getPixelFormat();
    QV_ASSERT_MSG(!(pf == IxPixelFormat::INVALID_FORMAT), "!(pf == IxPixelFormat::INVALID_FORMAT)");
    long long const index = indexAt(context.getTime());
    if (!inRange(index))
        return PxImageResult(allocateEmptyImageBuffer(), getImageROD(context.getTimeStreamContext()).getVI());
    GeRectangle<int> const pixels =
        getTilePixels(context.getTilePosition()).getIntersection(getImagePixels(context.getProxyScale()));
    if (pixels.isEmpty())
        return PxImageResult(allocateEmptyImageBuffer(),
                             PxValidityInterval::createFrameInterval(_rate, context.getTime()));
    return getTileShared(context);
}

PxImageResult BtImageReaderNode::lookInCache(PxImageContext const& context) const {
    PxImageResult result;
    if (context.getProxyScale() < getNbDiskCachedProxyScales()) {
        LookupData lookup;
        result = getDiskCachedImageResult(context, lookup);
    } else {
        result = getMemCachedImageResult(context);
    }
    if (result.getTile().isValid() && result.getVI().isNonEmpty()) {
        QV_ASSERT_MSG(result.getVI().contains(context.getTime()), "valIntrvl.contains( ctx.getTime() )");
        return result;
    }
    return {};
}

void BtImageReaderNode::storeTile(PxImageResult const& result, PxImageContext const& context) const {
    if (getStorageKind() == PxResultProtocol::MEMORY_AND_DISK &&
        context.getProxyScale() < getNbDiskCachedProxyScales()) {
        LookupData lookup;
        if (!getDiskCachedImageResult(context, lookup).getTile().isValid())
            setDiskCachedImageResult(result, context, lookup);
        return;
    }
    setMemCachedImageResult(result, context);
}

PxImageResult BtImageReaderNode::getTileShared(PxImageContext const& context) const {
    PxRequestMgr& mgr = PxRequestMgr::getInstance();
    GePoint2<int> const& tile = context.getTilePosition();
    bool const level0 = context.getProxyScale() == 0;
    RequestKey const key{indexAt(context.getTime()), context.getProxyScale(), level0 ? 0 : tile.x,
                         level0 ? 0 : tile.y};
    for (;;) {
        PxImageResult cached = lookInCache(context);
        if (cached.getTile().isValid())
            return cached;
        PxRequestPtr<GetImageRequest> request;
        bool poster = false;
        {
            LkLock::Guard const guard(_requestLock);
            auto const found = _requests.find(key);
            if (found != _requests.end()) {
                request = found->second;
            } else {
                std::vector<GeRectangle<int>> levels;
                int const nbLevels = std::max(context.getProxyScale() + 1, getNbDiskCachedProxyScales());
                for (int level = 0; level < nbLevels; ++level)
                    levels.push_back(convertPixelsToTiles(getImagePixels(level)));
                request = PxRequestPtr<GetImageRequest>(
                    new GetImageRequest(*this, context, std::make_shared<BtTileKeeper>(levels)));
                // Posted before anyone else can find it: a wait on a request
                // never posted would run it on the waiting thread.
                mgr.postRequest(request, 0);
                _requests.emplace(key, request);
                poster = true;
            }
        }
        PxImageResult result;
        bool cancelled = false;
        try {
            mgr.waitForRequest(request);
            result = request->getContext().getTilePosition() == tile
                         ? request->getResult()
                         : request->getKeeper().get(context.getProxyScale(), tile);
        } catch (PxEx::ExRequestCancelled const&) {
            cancelled = true;
        } catch (...) {
            {
                LkLock::Guard const guard(_requestLock);
                auto const found = _requests.find(key);
                if (found != _requests.end() && found->second.get() == request.get())
                    _requests.erase(found);
            }
            if (poster)
                mgr.releaseRequest(request);
            throw;
        }
        {
            LkLock::Guard const guard(_requestLock);
            auto const found = _requests.find(key);
            if (found != _requests.end() && found->second.get() == request.get())
                _requests.erase(found);
        }
        if (poster)
            mgr.releaseRequest(request);
        // A shared read cancelled for its poster is no reason to fail here:
        // unless this request is cancelled itself, ask again.
        if (cancelled)
            mgr.checkCancellation();
        if (result.getTile().isValid())
            return result;
    }
}

PxImageResult BtImageReaderNode::computeRequest(PxImageContext const& context, BtTileKeeper& keeper) const {
    PxImageResult result = lookInCache(context);
    if (result.getTile().isValid())
        return result;
    if (context.getProxyScale() == 0) {
        readFrame(context, keeper, true);
        result = keeper.get(0, context.getTilePosition());
    } else {
        result = computeProxyTile(context, keeper);
    }
    QV_ASSERT_MSG(result.getVI().isNonEmpty(), "result.getVI().isNonEmpty()");
    QV_ASSERT_MSG(result.getVI().contains(context.getTime()), "result.getVI().contains( ctx.getTime() )");
    QV_ASSERT_MSG(
        getImageFormat().getValue().getPixelFormat().getAspectRatio() ==
            result.getPixelFormat().getAspectRatio(),
        "getImageFormat().getPixelFormat().getAspectRatio() == result.getPixelFormat().getAspectRatio()");
    return result;
}

PxImageResult BtImageReaderNode::computeTile(PxImageContext const& context, BtTileKeeper& keeper) const {
    PxImageResult result = keeper.get(context.getProxyScale(), context.getTilePosition());
    if (result.getTile().isValid() && result.getVI().isNonEmpty())
        return result;
    if (context.getProxyScale() == 0) {
        result = getTileShared(context);
        keeper.put(0, context.getTilePosition(), result);
        return result;
    }
    return computeProxyTile(context, keeper);
}

// --- failures and guesses

void BtImageReaderNode::publishGuess(CoRgbColorTyped<float> const& colour) const {
    std::shared_ptr<Publisher> const publisher = _publisher;
    Uuid const storageId = getStorageId();
    EvEventManager::getInstance().postEvent(std::make_unique<EvRequestEvent>([publisher, storageId, colour] {
        QV_ASSERT(!PxRequestMgr::getInstance().isWorkerThreadCurrent());
        BtImageReaderNode* node = nullptr;
        {
            std::lock_guard const lock(publisher->mutex);
            node = publisher->node;
        }
        if (node == nullptr || node->_colorDispatcher.isEmpty())
            return;
        ColorGuess guess(storageId, colour);
        node->_colorDispatcher.dispatch(guess);
    }));
}

} // namespace Qv
