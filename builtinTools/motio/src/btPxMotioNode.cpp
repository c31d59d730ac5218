#include "btPxMotioNode.h"

#include "assertions.h"
#include "btMotioLevels.h"
#include "btMotionUtils.h"
#include "hwCounter.h"
#include "ipSet.h"
#include "ixPixelUtil.h"
#include "ixWriteGuard.h"
#include "lgLog.h"
#include "pxEx.h"
#include "pxImageMultiTileRequest.h"
#include "pxRequestMgr.h"

#include <algorithm>
#include <fmt/format.h>
#include <stdexcept>

namespace Qv {

namespace {

char const* const SOURCE = "builtinTools\\motio\\src\\btPxMotioNode";
char const* const TRACE = "BtPxMotioNode";
char const* const PERF_TRACE = "MotioPerfTest";

// The trace levels of the analysis and of the caches it leans on.
struct TraceLevels {
    TraceLevels() {
        Trace::registerLevel(TRACE, SOURCE);
        Trace::registerLevel(PERF_TRACE, SOURCE);
        Trace::registerLevel("StImageCacheNodeProc", SOURCE);
        Trace::registerLevel("StImageCacheNodeHITS", SOURCE);
    }
} const gTraceLevels;

bool tracing() {
    return Trace::isEnabled(TRACE);
}

void trace(std::string const& text) {
    if (tracing())
        Trace::output(TRACE, text);
}

// Entry and exit of an operation on the trace.
class TraceScope {
public:
    explicit TraceScope(char const* name) : _name(name) { trace(std::string("> ") + _name); }
    ~TraceScope() { trace(std::string("< ") + _name); }
    TraceScope(TraceScope const&) = delete;
    TraceScope& operator=(TraceScope const&) = delete;

private:
    char const* _name;
};

// Sets a flag for the length of a scope.
class FlagScope {
public:
    explicit FlagScope(std::atomic<bool>& flag) : _flag(flag), _before(flag.exchange(true)) {}
    ~FlagScope() { _flag.store(_before); }
    FlagScope(FlagScope const&) = delete;
    FlagScope& operator=(FlagScope const&) = delete;

private:
    std::atomic<bool>& _flag;
    bool _before;
};

int getMaxProxyScale(int minDimension) {
    return BtMotioLevels::log2ceil(minDimension) - BtMotioLevels::log2ceil(5);
}

bool isSameContext(PxImageContext const& a, PxImageContext const& b) {
    double const ta = a.getTime();
    double const tb = b.getTime();
    return a.getTilePosition() == b.getTilePosition() && !(ta < tb) && !(tb < ta) &&
           a.getProxyScale() == b.getProxyScale() && a.getStream() == b.getStream();
}

GeRectangle<int> pixelRegion(GeRectangle<float> const& nominalRod, float pixAspectRatio, int proxyScale) {
    return PxImageProtocol::nominalToPixelized(nominalRod, pixAspectRatio,
                                               PxImageProtocol::proxyScaleToFactor(proxyScale));
}

} // namespace

// The analysis of one frame and vector type, run once for every thread that
// asks meanwhile.
class BtPxMotioNode::ProcRequest : public PxRequest {
public:
    ProcRequest(BtPxMotioNode const& node, PxImageContext const& context, BtMotioTypes::VectorType type,
                float pixAspectRatio, GeRectangle<float> const& nominalRod)
        : _node(node), _context(context), _type(type), _pixAspectRatio(pixAspectRatio),
          _nominalRod(nominalRod) {}

    std::string getRequestType() const override { return "MotioAnalysis"; }
    void performExecute() override {
        _node.performGetVectorsResult(_result, _context, _type, _pixAspectRatio, _nominalRod);
    }

    PxImageContext const& getContext() const { return _context; }
    BtMotioTypes::VectorType getType() const { return _type; }
    PxImageResult const& getResult() const { return _result; }

private:
    // The asker holds the node while it waits, and the analysis is never left running.
    BtPxMotioNode const& _node;
    PxImageContext _context;
    BtMotioTypes::VectorType _type;
    float _pixAspectRatio;
    GeRectangle<float> _nominalRod;
    PxImageResult _result;
};

BtPxMotioNode::BtPxMotioNode(PxNode::Init const& init, PxNodePtr<PxImageProtocol const> const& image,
                             PerType<PxNodePtr<PxImageProtocol const>> const& iterOutput,
                             PerType<PxNodePtr<BtPxMotioCacheNode const>> const& vectorCache,
                             PerType<PxNodePtr<BtPxMotioIterSwitchNode const>> const& iterSwitch,
                             PerType<PxNodePtr<PxImageProtocol const>> const& normalized,
                             PerType<PxNodePtr<PxImageProtocol const>> const& upscaled,
                             PxNodePtr<PxAnimValueProtocol<int> const> const& quality)
    : PxNode(init), PxImageNode(init, image), _image(image), _iterOutput(iterOutput),
      _vectorCache(vectorCache), _iterSwitch(iterSwitch), _normalized(normalized), _upscaled(upscaled),
      _quality(quality) {
    QV_ASSERT(!_image.isNull() && !_quality.isNull());
}

BtPxMotioNode::~BtPxMotioNode() {
    for (auto type = BtMotioTypes::FORWARD_VECTORS; type < BtMotioTypes::NB_VECTOR_TYPES;
         type = BtMotioTypes::next(type)) {
        unregisterChild(_iterOutput[type]);
        unregisterChild(_vectorCache[type]);
        unregisterChild(_iterSwitch[type]);
        unregisterChild(_normalized[type]);
        unregisterChild(_upscaled[type]);
    }
    unregisterChild(_quality);
}

void BtPxMotioNode::init() {
    // PxImageNode registers _image.
    PxImageNode::init();
    for (auto type = BtMotioTypes::FORWARD_VECTORS; type < BtMotioTypes::NB_VECTOR_TYPES;
         type = BtMotioTypes::next(type)) {
        registerChild(_iterOutput[type]);
        registerChild(_vectorCache[type]);
        registerChild(_iterSwitch[type]);
        registerChild(_normalized[type]);
        registerChild(_upscaled[type]);
    }
    registerChild(_quality);
}

PxResult<PxImageFormat> BtPxMotioNode::getImageFormat() const {
    return _vectorCache[BtMotioTypes::FORWARD_VECTORS]->getImageFormat();
}

PxRODResult BtPxMotioNode::getImageROD(PxTimeStreamContext const& context) const {
    return _vectorCache[BtMotioTypes::FORWARD_VECTORS]->getImageROD(context);
}

PxImageResult BtPxMotioNode::getImageResult(PxImageContext const&) const {
    throw std::logic_error("Invalid call to unimplementable BtPxMotioNode::getImageResult()");
}

bool BtPxMotioNode::propagateAndRemapInvalidation(PxValidityInterval* interval,
                                                  PxUPtr<PxNode const> const& child, int* stream) const {
    if (_clearingCaches.load())
        return false;
    return PxImageNode::propagateAndRemapInvalidation(interval, child, stream);
}

BtPxMotioNode::Levels BtPxMotioNode::getLevels(int minDimension, int quality) {
    int const l = BtMotioLevels::log2ceil(minDimension);
    return Levels{getMaxProxyScale(minDimension), std::max(l - 11, quality)};
}

int BtPxMotioNode::getNbIterations(int proxyScale) {
    return std::min(proxyScale + 1, 4);
}

PxImageResult BtPxMotioNode::getVectorsResult(PxImageContext const& context,
                                              BtMotioTypes::VectorType type) const {
    TraceScope const scope("BtPxMotioNode::getVectorsResult()");
    double const time = context.getTime();
    trace(fmt::format("Started getImageResult on {} for time {}", static_cast<void const*>(this), time));
    struct Finished {
        ~Finished() { trace("Finished getImageResult"); }
    } const finished;

    PxResult<PxImageFormat> const format = getImageFormat();
    PxRODResult const rod = getImageROD(context.getTimeStreamContext());
    PxValidityInterval interval = PxValidityInterval::FULL;
    format.reduceVI(interval);
    rod.reduceVI(interval);
    float const pixAspectRatio = static_cast<float>(BtMotionUtils::getPixelAspect(format.getValue()));
    GeRectangle<float> const& nROD = rod.getROD();
    GeRectangle<int> const pROD = pixelRegion(nROD, pixAspectRatio, context.getProxyScale());
    GeRectangle<int> const dstRgn = pROD.getIntersection(getTilePixels(context.getTilePosition()));
    if (tracing())
        trace(fmt::format("ctx.getProxyScale(): {} nROD: {} pROD: {} dstRgn: {}", context.getProxyScale(),
                          nROD.dump(), pROD.dump(), dstRgn.dump()));
    if (dstRgn.isEmpty())
        return PxImageResult(allocateEmptyImageBuffer(), interval);

    GeRectangle<int> const pRODFull = pixelRegion(nROD, pixAspectRatio, 0);
    int const minDimension = std::min(pRODFull.getWidth(), pRODFull.getHeight());
    int const maxProxyScale = getMaxProxyScale(minDimension);
    if (tracing())
        trace(fmt::format("pRODFull: {} minDimension: {} maxProxyScale: {}", pRODFull.dump(), minDimension,
                          maxProxyScale));
    // Under the analysis window even at full size: nothing to analyse.
    if (maxProxyScale < 0) {
        IxTile tile = allocateImageBuffer(context, dstRgn);
        ipSet(IxWriteGuard(tile), CoRgbaColorTyped<float>{0.0f, 0.0f, 0.0f, 0.0f}, &dstRgn);
        return PxImageResult(tile, interval);
    }
    if (context.getProxyScale() > maxProxyScale)
        return getAbovePyramid(context, type, maxProxyScale, dstRgn,
                               pixelRegion(nROD, pixAspectRatio, maxProxyScale));

    PxRequestMgr& manager = PxRequestMgr::getInstance();
    PxImageResult result;
    for (;;) {
        trace("Trying to get cached result.");
        PxImageResult cached = _vectorCache[type]->getImageResult(context);
        if (cached.getTile().isValid() && cached.getVI().contains(time)) {
            if (tracing())
                trace(
                    fmt::format("\"BtPxMotioNode\"::getImageResult cache hit for time {} tile {} at proxy {}",
                                time, context.getTilePosition().dump(), context.getProxyScale()));
            return cached;
        }

        PxRequestPtr<ProcRequest> request;
        bool poster = false;
        {
            LkLock::Guard const lock(_lock);
            if (_procRequest.isNull()) {
                request =
                    PxRequestPtr<ProcRequest>(new ProcRequest(*this, context, type, pixAspectRatio, nROD));
                _procRequest = request;
                // Posted before the lock goes: a wait for a request never
                // posted would run it, and the post after that is a fault.
                manager.postRequest(request, 0);
                poster = true;
            } else {
                request = _procRequest;
            }
        }

        auto forget = [&] {
            LkLock::Guard const lock(_lock);
            if (_procRequest == request)
                _procRequest.reset();
        };
        try {
            manager.waitForRequest(request);
        } catch (PxEx::ExRequestCancelled const&) {
            forget();
            if (poster)
                manager.releaseRequest(request);
            // Cancelled with the request that started it: whoever is not
            // cancelled starts another analysis.
            manager.checkCancellation();
            continue;
        } catch (...) {
            forget();
            if (poster)
                manager.releaseRequest(request);
            throw;
        }
        bool const mine = request->getType() == type && isSameContext(request->getContext(), context);
        if (mine)
            result = request->getResult();
        forget();
        if (poster)
            manager.releaseRequest(request);
        if (mine)
            return result;
    }
}

PxImageResult BtPxMotioNode::getAbovePyramid(PxImageContext const& context, BtMotioTypes::VectorType type,
                                             int maxProxyScale, GeRectangle<int> const& dstRgn,
                                             GeRectangle<int> const& pRodTop) const {
    GePoint2<int> const corner{pRodTop.x1, pRodTop.y1};
    PxImageContext const top(context.getTime(), convertPixelToTile(corner), maxProxyScale,
                             context.getStream());
    PxImageResult const limit = getVectorsResult(top, type);
    GeRectangle<int> const lmtRgn = limit.getPixelRegion();
    QV_ASSERT_MSG(!lmtRgn.isEmpty(), "!lmtRgn.isEmpty()");
    CoRgbaColorTyped<float> const colour =
        IxPixelUtil::getPixelColor(limit.getTileGuard(), lmtRgn.x1, lmtRgn.y1);
    IxTile tile = allocateImageBuffer(context, dstRgn);
    ipSet(IxWriteGuard(tile), colour, &dstRgn);
    return PxImageResult(tile, limit.getVI());
}

void BtPxMotioNode::performGetVectorsResult(PxImageResult& result, PxImageContext const& context,
                                            BtMotioTypes::VectorType type, float pixAspectRatio,
                                            GeRectangle<float> const& nominalRod) const {
    TraceScope const scope("BtPxMotioNode::performGetVectorsResult()");
    double const time = context.getTime();
    result = _vectorCache[type]->getImageResult(context);
    if (result.getTile().isValid() && result.getVI().contains(time)) {
        if (tracing())
            trace(fmt::format("\"BtPxMotioNode\"::getImageResult cache hit for time {} tile {} at proxy {}",
                              time, context.getTilePosition().dump(), context.getProxyScale()));
        return;
    }
    trace(fmt::format("Must compute result for time {}", time));
    _nbAnalyses.fetch_add(1, std::memory_order_relaxed);
    bool const timed = Trace::isEnabled(PERF_TRACE);
    HwCounter const counter;
    try {
        compute(time, nominalRod, pixAspectRatio, type, context.getStream());
    } catch (...) {
        trace("Caught exception.");
        // No half-made pyramid stays behind, and nothing downstream hears of
        // the inner caches being emptied.
        FlagScope const clearing(_clearingCaches);
        _vectorCache[type]->dropChainEntries();
        _vectorCache[type]->invalidate(PxValidityInterval::FULL, context.getStream());
        throw;
    }
    if (timed)
        Trace::output(PERF_TRACE, fmt::format("Motio compute() time: {} s", counter.getElapsedSeconds()));
    result = _vectorCache[type]->getImageResult(context);
    QV_ASSERT_MSG(result.getVI().isNonEmpty(), "result.getVI().isNonEmpty()");
}

void BtPxMotioNode::compute(double time, GeRectangle<float> const& nominalRod, float pixAspectRatio,
                            int vectorType, int stream) const {
    GeRectangle<int> const pRODFull = pixelRegion(nominalRod, pixAspectRatio, 0);
    int const minDimension = std::min(pRODFull.getWidth(), pRODFull.getHeight());
    PxResult<int> quality;
    PxUPtr<PxAnimValueProtocol<int> const>(_quality)->getAnimValue(quality, PxTimeContext(time));
    Levels const levels = getLevels(minDimension, quality.getValue());
    auto const type = static_cast<BtMotioTypes::VectorType>(vectorType);

    seed(time, nominalRod, pixAspectRatio, levels.maxProxyScale + 1, vectorType, stream);
    for (int p = levels.maxProxyScale; p >= levels.analysisLevel; --p) {
        TraceScope const scope("BtPxMotioNode::computeOneLevel()");
        int const nbIterations = getNbIterations(p);
        for (int k = 0; k < nbIterations; ++k) {
            clearCaches(vectorType, stream);
            _iterSwitch[type]->setIteration(static_cast<unsigned>(k));
            computeAndCacheAllTiles(_iterOutput[type], time, p, vectorType, stream);
        }
    }
    clearCaches(vectorType, stream);

    int const first = std::max(levels.analysisLevel, pixAspectRatio == 1.0f ? 1 : 0);
    for (int p = levels.maxProxyScale; p >= first; --p)
        computeAndCacheAllTiles(_normalized[type], time, p, vectorType, stream);
    // A quality coarser than the pyramid analyses nothing: the seed, just
    // above the pyramid, is made larger all the way down.
    for (int p = std::min(levels.analysisLevel, levels.maxProxyScale + 1) - 1; p >= 0; --p)
        computeAndCacheAllTiles(_upscaled[type], time, p, vectorType, stream);
}

void BtPxMotioNode::seed(double time, GeRectangle<float> const& nominalRod, float pixAspectRatio,
                         int proxyScale, int vectorType, int stream) const {
    GeRectangle<int> const region = pixelRegion(nominalRod, pixAspectRatio, proxyScale);
    GePoint2<int> const firstTile = convertPixelToTile({region.x1, region.y1});
    GePoint2<int> const lastTile = convertPixelToTile({region.x2 - 1, region.y2 - 1});
    for (int ty = firstTile.y; ty <= lastTile.y; ++ty) {
        for (int tx = firstTile.x; tx <= lastTile.x; ++tx) {
            PxImageContext const context(time, {tx, ty}, proxyScale, stream);
            GeRectangle<int> const rgn = getTilePixels({tx, ty}).getIntersection(region);
            QV_ASSERT_MSG(!rgn.isEmpty(), "!rgn.isEmpty()");
            IxTile tile = allocateImageBuffer(context, rgn);
            ipSet(IxWriteGuard(tile), CoRgbaColorTyped<float>{0.0f, 0.0f, 0.0f, 0.0f}, &rgn);
            _vectorCache[vectorType]->setCachedImageResult(PxImageResult(tile, PxValidityInterval::FULL),
                                                           context);
        }
    }
}

void BtPxMotioNode::computeAndCacheAllTiles(PxNodePtr<PxImageProtocol const> const& node, double time,
                                            int proxyScale, int vectorType, int stream) const {
    PxRequestMgr& manager = PxRequestMgr::getInstance();
    PxRequestPtr<PxImageMultiTileRequest> const request(
        new PxImageMultiTileRequest(node, stream, PxTimeInfo(time), proxyScale));
    manager.postRequest(request, 0);
    RCStrongPtr<PxImageMultiTileRequest::Results> results;
    try {
        results = request->getResults();
    } catch (...) {
        manager.releaseRequest(request);
        throw;
    }
    manager.releaseRequest(request);
    // Only now: a tile of the pass may read its neighbours of the pass before.
    for (PxImageResult const& result : *results) {
        GeRectangle<int> const& region = result.getPixelRegion();
        if (!result.getTile().isValid() || region.isEmpty())
            continue;
        PxImageContext const context(time, convertPixelToTile({region.x1, region.y1}), proxyScale, stream);
        _vectorCache[vectorType]->setCachedImageResult(result, context);
    }
}

void BtPxMotioNode::clearCaches(int vectorType, int stream) const {
    FlagScope const clearing(_clearingCaches);
    BtPxMotioCacheNode const& cache = *_vectorCache[vectorType];
    // This node is a parent too: it hears of the iteration graph's
    // invalidation through _iterOutput, and stops it there.
    for (int i = 0; i < cache.getNbParents(); ++i) {
        PxNode* const parent = cache.getParent(i);
        if (parent != this)
            parent->invalidate(PxValidityInterval::FULL, stream);
    }
}

} // namespace Qv
