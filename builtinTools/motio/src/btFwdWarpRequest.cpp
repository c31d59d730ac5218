#include "btFwdWarpRequest.h"

#include "btFwdWarpProc.h"

#include <utility>

namespace Qv {

FwdWarpRequest::FwdWarpRequest(int index, int count, double time, int proxyScale, int stream,
                               GeRectangle<int> const& tiles, IxTile acc, IxTile cov, float warpCoef,
                               PxNodePtr<PxImageProtocol const> image,
                               PxNodePtr<PxImageProtocol const> vectors)
    : BtWarpPxRequest(index, count), _time(time), _proxyScale(proxyScale), _stream(stream), _tiles(tiles),
      _acc(std::move(acc)), _cov(std::move(cov)), _warpCoef(warpCoef), _image(std::move(image)),
      _vectors(std::move(vectors)) {}

void FwdWarpRequest::performExecute() {
    PxUPtr<PxImageProtocol const> const image(_image);
    PxUPtr<PxImageProtocol const> const vectors(_vectors);
    BtFwdWarpProc proc(_acc, _cov, _warpCoef);
    int const index = getIndex();
    int const count = getCount();
    int c = 0;
    for (int ty = _tiles.y1; ty < _tiles.y2; ++ty)
        for (int tx = _tiles.x1; tx < _tiles.x2; ++tx, ++c) {
            if (c % count != index)
                continue;
            PxImageContext const context(_time, {tx, ty}, _proxyScale, _stream);
            PxImageResult const source = image->getImageResult(context);
            source.reduceVI(_interval);
            PxImageResult const motion = vectors->getImageResult(context);
            motion.reduceVI(_interval);
            if (source.getPixelRegion().isEmpty())
                continue;
            proc.splat(source.getTileGuard(), motion.getTileGuard(), source.getPixelRegion());
        }
}

} // namespace Qv
