#include "btFwdWarpPxNode.h"

#include "assertions.h"
#include "btFwdWarpRequest.h"
#include "btWarpUtils.h"
#include "ipSet.h"
#include "pxImageMultiTileRequest.h"
#include "pxRequestMgr.h"

#include <vector>

namespace Qv {

namespace {

// The poster's release of a request, whatever way the scope is left.
class ReleaseOnExit {
public:
    explicit ReleaseOnExit(PxRequestPtrBase const& request) : _request(request) {}
    ~ReleaseOnExit() { PxRequestMgr::getInstance().releaseRequest(_request); }
    ReleaseOnExit(ReleaseOnExit const&) = delete;
    ReleaseOnExit& operator=(ReleaseOnExit const&) = delete;

private:
    PxRequestPtrBase const& _request;
};

IxTile makeZeroTile(IxPixelFormat const& format, GeRectangle<int> const& region) {
    IxTile tile(format, region);
    ipSet(IxWriteGuard(tile), CoRgbaColorTyped<float>::ZERO);
    return tile;
}

} // namespace

FwdWarpPxNode::FwdWarpPxNode(PxNode::Init const& init, PxNodePtr<PxImageProtocol const> const& image,
                             PxNodePtr<PxImageProtocol const> const& vectors)
    : PxNode(init), PxImageNode(init, image), _vectors(vectors) {
    QV_ASSERT(!_vectors.isNull());
    BtWarpUtils::storeResourceConfig();
}

FwdWarpPxNode::~FwdWarpPxNode() {
    unregisterChild(_vectors);
}

void FwdWarpPxNode::init() {
    PxImageNode::init();
    registerChild(_vectors);
}

PxResult<PxImageFormat> FwdWarpPxNode::computeImageFormat() const {
    PxResult<PxImageFormat> result = PxImageNode::computeImageFormat();
    if (!_vectors->isChainConnected())
        return result;
    PxImageFormat format = result.getValue();
    IxPixelFormat const& image = format.getPixelFormat();
    IxPixelFormat::Comps const comps =
        image.getComps() == IxPixelFormat::ALPHA ? IxPixelFormat::ALPHA : IxPixelFormat::RGBA;
    format.setPixelFormat(IxPixelFormat(comps, IxPixelFormat::FLOAT32, image.getAspectRatio()));
    result.setValue(format);
    return result;
}

PxImageResult FwdWarpPxNode::getImageResult(PxImageContext const& context) const {
    PxUPtr<PxImageProtocol const> const image(getInput());
    PxUPtr<PxImageProtocol const> const vectors(_vectors);
    if (!vectors->isChainConnected())
        return getWholeImage(context);

    PxValidityInterval interval = PxValidityInterval::FULL;
    int const proxyScale = context.getProxyScale();
    GeRectangle<int> const region =
        computeImagePixelRegion(image, context.getTimeStreamContext(), proxyScale, interval);
    if (region.getIntersection(getTilePixels(context.getTilePosition())).isEmpty())
        return PxImageResult(allocateEmptyImageBuffer(), interval);

    int const n = BtWarpUtils::getNbFwdWarps(region);
    // The band of two pixels takes what leaves the frame.
    GeRectangle<int> const accRegion{region.x1 - 2, region.x2 + 2, region.y1 - 2, region.y2 + 2};
    GeRectangle<int> const tiles = convertPixelsToTiles(region);
    IxPixelFormat const format = getImageFormat().getValue().getPixelFormat();
    IxPixelFormat const accFormat(format.getComps(), IxPixelFormat::FLOAT32, format.getAspectRatio());
    IxPixelFormat const covFormat(IxPixelFormat::ALPHA, IxPixelFormat::FLOAT32, format.getAspectRatio());

    std::vector<IxTile> acc, cov;
    std::vector<PxRequestPtr<FwdWarpRequest>> requests;
    for (int i = 0; i < n; ++i) {
        acc.push_back(makeZeroTile(accFormat, accRegion));
        cov.push_back(makeZeroTile(covFormat, accRegion));
        requests.emplace_back(new FwdWarpRequest(i, n, context.getTime(), proxyScale, context.getStream(),
                                                 tiles, acc.back(), cov.back(), 1.0f, getInput(), _vectors));
    }
    BtWarpPxRequest::runAll(requests);
    for (PxRequestPtr<FwdWarpRequest> const& request : requests)
        interval.intersect(request->getVI());
    requests.clear();

    BtWarpUtils::accumulate(acc, cov);
    acc.resize(1);
    cov.resize(1);
    return PxImageResult(BtWarpUtils::fwdWarpReturn(n, acc.front(), cov.front(), region, format), interval);
}

PxImageResult FwdWarpPxNode::getWholeImage(PxImageContext const& context) const {
    PxRequestPtr<PxImageMultiTileRequest> const request(new PxImageMultiTileRequest(
        getInput(), context.getStream(), PxTimeInfo(context.getTime()), context.getProxyScale()));
    ReleaseOnExit const release(request);
    RCStrongPtr<PxImageMultiTileRequest::Results> const results = request->getResults();
    PxValidityInterval interval = PxValidityInterval::FULL;
    computeImagePixelRegion(PxUPtr<PxImageProtocol const>(getInput()), context.getTimeStreamContext(),
                            context.getProxyScale(), interval);
    for (PxImageResult const& result : *results)
        result.reduceVI(interval);
    IxTile tile = PxImageMultiTileRequest::assembleTiles(*results);
    if (!tile.isValid())
        tile = allocateEmptyImageBuffer();
    return PxImageResult(tile, interval);
}

} // namespace Qv
