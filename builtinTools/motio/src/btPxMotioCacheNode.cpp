#include "btPxMotioCacheNode.h"

#include "assertions.h"
#include "btMotionUtils.h"
#include "piGraph.h"
#include "piSocket.h"
#include "stInterface.h"
#include "uuid.h"

namespace Qv {

namespace {

std::string makeIdentity(PiGraph const* graph, RCShdPtr<PiSocket const> const& socket, bool inner) {
    std::string identity = "BtPxMotioCacheNode|";
    if (graph)
        identity += const_cast<PiGraph*>(graph)->getUuid().toString();
    identity += '|';
    if (!socket.isNull())
        identity += socket->getFullName();
    identity += inner ? "|inner|" : "|outer|";
    identity += Uuid::createRandom().toString();
    return identity;
}

} // namespace

BtPxMotioCacheNode::BtPxMotioCacheNode(PxNode::Init const& init, PiGraph const* graph,
                                       RCShdPtr<PiSocket const> const& socket,
                                       PxNodePtr<PxImageProtocol const> const& image,
                                       PxNodePtr<PxAnimValueProtocol<int> const> const& quality,
                                       PxNodePtr<BtPxMotioCacheNode const> const& childCache)
    : PxNode(init), StImageCacheBaseNode(init, Uuid(), PxResultProtocol::MEMORY_AND_DISK), _image(image),
      _quality(quality), _childCache(childCache),
      _proxyOffset(childCache.isNull() ? getNbDiskCachedProxyScales() : 0),
      _identity(makeIdentity(graph, socket, childCache.isNull())) {
    QV_ASSERT(!_image.isNull());
    setStorageId(StInterface::getInstance().getStorageId(_identity));
}

BtPxMotioCacheNode::~BtPxMotioCacheNode() {
    unregisterChild(_image);
    unregisterChild(_quality);
    unregisterChild(_childCache);
    dropCachedEntries(PxValidityInterval::FULL);
}

PxStrongHndl<BtPxMotioCacheNode>
BtPxMotioCacheNode::create(PiGraph const* graph, RCShdPtr<PiSocket const> const& socket,
                           PxStrongHndl<PxNode const> const& image, PxStrongHndl<PxNode const> const& quality,
                           PxStrongHndl<BtPxMotioCacheNode const> const& childCache) {
    PxNode::Init init;
    PxStrongHndl<BtPxMotioCacheNode> node(
        new BtPxMotioCacheNode(init, graph, socket, PxNodePtr<PxImageProtocol const>(image),
                               quality.isNull() ? PxNodePtr<PxAnimValueProtocol<int> const>()
                                                : PxNodePtr<PxAnimValueProtocol<int> const>(quality),
                               childCache.isNull() ? PxNodePtr<BtPxMotioCacheNode const>()
                                                   : PxNodePtr<BtPxMotioCacheNode const>(childCache)));
    PxNode::init(node);
    return node;
}

void BtPxMotioCacheNode::init() {
    StImageCacheBaseNode::init();
    registerChild(_image);
    if (!_quality.isNull())
        registerChild(_quality);
    if (!_childCache.isNull())
        registerChild(_childCache);
}

PxResult<PxImageFormat> BtPxMotioCacheNode::getImageFormat() const {
    PxResult<PxImageFormat> const image = _image->getImageFormat();
    PxImageFormat format = image.getValue();
    format.setPixelFormat(
        IxPixelFormat(IxPixelFormat::RGB, IxPixelFormat::FLOAT16, format.getPixelFormat().getAspectRatio()));
    return PxResult<PxImageFormat>(format, image.getVI());
}

PxRODResult BtPxMotioCacheNode::getImageROD(PxTimeStreamContext const& context) const {
    PxRODResult result = _image->getImageROD(context);
    float const factor = proxyScaleToFactor(_proxyOffset);
    GeRectangle<float> const rod = result.getROD();
    result.setROD(GeRectangle<float>{rod.x1 * factor, rod.x2 * factor, rod.y1 * factor, rod.y2 * factor});
    return result;
}

bool BtPxMotioCacheNode::isChainConnected() const {
    return _image->isChainConnected();
}

int BtPxMotioCacheNode::getNbStreams() const {
    return _image->getNbStreams();
}

PxImageResult BtPxMotioCacheNode::getImageResult(PxImageContext const& context) const {
    PxValidityInterval interval = PxValidityInterval::FULL;
    PxResult<PxImageFormat> const format = getImageFormat();
    PxRODResult const rod = getImageROD(context.getTimeStreamContext());
    format.reduceVI(interval);
    rod.reduceVI(interval);
    GeRectangle<int> const region =
        nominalToPixelized(rod.getROD(), BtMotionUtils::getPixelAspect(format.getValue()),
                           proxyScaleToFactor(context.getProxyScale()))
            .getIntersection(getTilePixels(context.getTilePosition()));
    if (region.isEmpty())
        return PxImageResult(allocateEmptyImageBuffer(), interval);
    PxImageResult cached = getCachedImageResult(context);
    if (!cached.getTile().isValid())
        return PxImageResult(allocateEmptyImageBuffer(), PxValidityInterval::EMPTY);
    return cached;
}

void BtPxMotioCacheNode::dropChainEntries() const {
    dropCachedEntries(PxValidityInterval::FULL);
    if (!_childCache.isNull())
        _childCache->dropChainEntries();
}

PxImageResult BtPxMotioCacheNode::getCachedImageResult(PxImageContext const& context) const {
    int const n = getNbDiskCachedProxyScales();
    int const proxy = context.getProxyScale();
    if (proxy <= n - 1) {
        LookupData lookup;
        return getDiskCachedImageResult(context, lookup);
    }
    QV_ASSERT_MSG(!_childCache.isNull(), "!_childCache.isNull()");
    PxImageContext const deeper(context.getTime(), context.getTilePosition(), proxy - n, context.getStream());
    return _childCache->getCachedImageResult(deeper);
}

void BtPxMotioCacheNode::setCachedImageResult(PxImageResult const& result,
                                              PxImageContext const& context) const {
    int const n = getNbDiskCachedProxyScales();
    int const proxy = context.getProxyScale();
    if (proxy <= n - 1) {
        LookupData lookup;
        (void)getDiskCachedImageResult(context, lookup);
        setDiskCachedImageResult(result, context, lookup);
        return;
    }
    QV_ASSERT_MSG(!_childCache.isNull(), "!_childCache.isNull()");
    PxImageContext const deeper(context.getTime(), context.getTilePosition(), proxy - n, context.getStream());
    _childCache->setCachedImageResult(result, deeper);
}

} // namespace Qv
