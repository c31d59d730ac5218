#include "stImageCacheNode.h"

#include "assertions.h"
#include "pxEx.h"
#include "pxRequest.h"
#include "pxRequestMgr.h"
#include "stTileStore.h"

namespace Qv {

class StImageCacheNode::ComputeRequest : public PxRequest {
public:
    ComputeRequest(StImageCacheNode const& node, PxImageContext const& context)
        : _node(node), _context(context) {
        // The node stays while the request may run, even if every asker gave up.
        _node.addNodeRef();
    }
    ~ComputeRequest() override { _node.releaseNodeRef(); }

    std::string getRequestType() const override { return "StImageCacheNode::ComputeRequest"; }
    void performExecute() override { _result = _node.compute(_context); }
    // Read by the waiters once the request is done.
    PxImageResult const& getResult() const { return _result; }

private:
    StImageCacheNode const& _node;
    PxImageContext const _context;
    PxImageResult _result;
};

StImageCacheNode::StImageCacheNode(PxNode::Init const& init, PxNodePtr<PxImageProtocol const> input,
                                   std::string name)
    : PxNode(init), StImageCacheBaseNode(init, Uuid::createRandom(), PxResultProtocol::MEMORY),
      _input(std::move(input)), _name(std::move(name)) {
    QV_ASSERT(!_input.isNull());
}

StImageCacheNode::~StImageCacheNode() {
    unregisterChild(_input);
    StTileStore::getInstance().remove(getStorageId());
}

void StImageCacheNode::init() {
    StImageCacheBaseNode::init();
    registerChild(_input);
}

PxResult<PxImageFormat> StImageCacheNode::getImageFormat() const {
    return _input->getImageFormat();
}

PxRODResult StImageCacheNode::getImageROD(PxTimeStreamContext const& context) const {
    return _input->getImageROD(context);
}

bool StImageCacheNode::isChainConnected() const {
    return _input->isChainConnected();
}

bool StImageCacheNode::producesFullFrames() const {
    return _input->producesFullFrames();
}

PxImageContext StImageCacheNode::getComputeContext(PxImageContext const& context) const {
    if (!_input->producesFullFrames())
        return context;
    PxValidityInterval interval = PxValidityInterval::FULL;
    GeRectangle<int> const region =
        computeImagePixelRegion(PxUPtr<PxImageProtocol const>(_input), context.getTimeStreamContext(),
                                context.getProxyScale(), interval);
    // A tile outside the frame gets the input's own empty answer.
    if (region.getIntersection(getTilePixels(context.getTilePosition())).isEmpty())
        return context;
    return context.atTile(convertPixelToTile({region.x1, region.y1}));
}

int StImageCacheNode::getNbStreams() const {
    return _input->getNbStreams();
}

PxImageResult StImageCacheNode::compute(PxImageContext const& context) const {
    _nbComputed.fetch_add(1, std::memory_order_relaxed);
    PxImageResult result = _input->getImageResult(context);
    // A result that does not hold at the asked time is handed on, not kept.
    if (result.getTile().isValid() && result.getVI().contains(context.getTime()))
        setMemCachedImageResult(result, context);
    return result;
}

PxImageResult StImageCacheNode::getImageResult(PxImageContext const& asked) const {
    PxImageContext const context = getComputeContext(asked);
    PxRequestMgr& manager = PxRequestMgr::getInstance();
    StTileKey const key = makeKey(context);
    for (;;) {
        PxImageResult cached = getMemCachedImageResult(context);
        if (cached.getTile().isValid())
            return cached;

        PxRequestPtr<ComputeRequest> request;
        bool posted = false;
        {
            LkLock::Guard const lock(_inFlightLock);
            auto const found = _inFlight.find(key);
            if (found != _inFlight.end() && !found->second->hasFailed()) {
                request = found->second;
                _nbJoined.fetch_add(1, std::memory_order_relaxed);
            } else {
                // A computation may have ended and stored its tile since the look above.
                cached = getMemCachedImageResult(context);
                if (cached.getTile().isValid())
                    return cached;
                request = PxRequestPtr<ComputeRequest>(new ComputeRequest(*this, context));
                // Posted before others can see it: a wait for a request never
                // posted would run it, and the post after that would be a fault.
                manager.postRequest(request, 0);
                _inFlight[key] = request;
                posted = true;
            }
        }

        // The poster owns the request: it takes it out of the map and
        // releases it once it is done with it, whatever the outcome.
        struct PosterCleanUp {
            StImageCacheNode const& node;
            StTileKey const& key;
            PxRequestPtr<ComputeRequest> const& request;
            bool active;
            ~PosterCleanUp() {
                if (!active)
                    return;
                {
                    LkLock::Guard const lock(node._inFlightLock);
                    auto const found = node._inFlight.find(key);
                    if (found != node._inFlight.end() && found->second == request)
                        node._inFlight.erase(found);
                }
                PxRequestMgr::getInstance().releaseRequest(request);
            }
        } cleanUp{*this, key, request, posted};

        try {
            manager.waitForRequest(request);
        } catch (PxEx::ExRequestCancelled const&) {
            // Cancelled with its poster, not with this asker: ask again. If
            // this asker is cancelled itself, the check says so.
            manager.checkCancellation();
            if (posted)
                throw;
            continue;
        }
        return request->getResult();
    }
}

} // namespace Qv
