#include "piImagePixel.h"

#include "ixReadGuard.h"
#include "ixScanline.h"
#include "pxImageProtocol.h"
#include "pxRequest.h"
#include "pxRequestMgr.h"
#include "pxRequestPtr.h"
#include "rcExUtil.h"

namespace Qv {

namespace {

// Finds the region on a worker (nodes are read only there), then computes
// the one tile that holds the pixel.
class PixelRequest : public PxRequest {
public:
    PixelRequest(PxNodePtr<PxImageProtocol const> node, double time, int proxyScale, int column, int row)
        : _node(std::move(node)), _time(time), _proxyScale(proxyScale), _column(column), _row(row) {}

    std::string getRequestType() const override { return "ImagePixel"; }

    void performExecute() override {
        PxUPtr<PxImageProtocol const> const node(_node);
        PxValidityInterval interval = PxValidityInterval::FULL;
        _pixel.region = PxImageProtocol::computeImagePixelRegion(node, PxTimeStreamContext(_time, 0),
                                                                 _proxyScale, interval);
        GeRectangle<int> const& region = _pixel.region;
        if (_column < 0 || _row < 0 || _column >= region.getWidth() || _row >= region.getHeight())
            return;
        _pixel.inside = true;
        GePoint2<int> const at{region.x1 + _column, region.y1 + _row};
        PxImageResult const result = node->getImageResult(
            PxImageContext(_time, PxImageProtocol::convertPixelToTile(at), _proxyScale, 0));
        // A tile without pixels (nothing drawn there) reads as transparent black.
        if (!result.getTile().isValid())
            return;
        IxScanline<CoRgbaColorTyped<float>> line(GeInterval<int>{at.x, at.x + 1});
        line.readFrom(result.getTileGuard(), at.y);
        _pixel.value = line[at.x];
    }

    PiImagePixel const& getPixel() const { return _pixel; }

private:
    PxNodePtr<PxImageProtocol const> _node;
    double _time;
    int _proxyScale;
    int _column;
    int _row;
    PiImagePixel _pixel;
};

} // namespace

PiImagePixel piComputeImagePixel(PxStrongHndl<PxNode const> const& node, double time, int proxyScale,
                                 int column, int row) {
    if (node.isNull())
        RCExUtil::throwExNullPtr(RCExUtil::getTypeName(typeid(PxImageProtocol)));
    PxRequestMgr& manager = PxRequestMgr::getInstance();
    PxRequestPtr<PixelRequest> request(
        new PixelRequest(PxNodePtr<PxImageProtocol const>(node), time, proxyScale, column, row));
    manager.postRequest(request, 0);
    struct Release {
        PxRequestMgr& manager;
        PxRequestPtr<PixelRequest>& request;
        ~Release() { manager.releaseRequest(request); }
    } release{manager, request};
    manager.waitForRequest(request);
    return request->getPixel();
}

} // namespace Qv
