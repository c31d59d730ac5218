#pragma once
// What the motion benchmarks share: an input frame cut into the tile grid
// beforehand, so that reading a tile costs nothing but the handle and a
// kernel's own work is what is timed, and the evaluation of every tile of a
// node on the workers.
#include "benchTiming.h"
#include "ixPixelUtil.h"
#include "ixWriteGuard.h"
#include "pxImageMultiTileRequest.h"
#include "pxRequestMgr.h"

#include <functional>
#include <map>
#include <opencv2/core.hpp>
#include <utility>

namespace QvBench {

class TiledFrameNode : public Qv::PxImageProtocol {
public:
    using Pixel = std::function<Qv::CoRgbaColorTyped<float>(int x, int y)>;

    // `frame` in pixels at `proxyScale`; at any other scale the node has no pixel.
    TiledFrameNode(Qv::PxNode::Init const& init, Qv::IxPixelFormat const& format,
                   Qv::GeRectangle<int> const& frame, int proxyScale, Pixel const& pixel)
        : Qv::PxNode(init), Qv::PxImageProtocol(init),
          _format(Qv::PxImageFormat(format, Qv::Rational(24, 1)), Qv::PxValidityInterval::FULL),
          _rod(pixelizedToNominal(frame, 1.0, proxyScaleToFactor(proxyScale))), _proxyScale(proxyScale) {
        Qv::GeRectangle<int> const tiles = convertPixelsToTiles(frame);
        for (int ty = tiles.y1; ty < tiles.y2; ++ty)
            for (int tx = tiles.x1; tx < tiles.x2; ++tx) {
                Qv::GeRectangle<int> const region = getTilePixels({tx, ty}).getIntersection(frame);
                Qv::IxTile tile(format, region);
                Qv::IxWriteGuard const out(tile);
                for (int y = region.y1; y < region.y2; ++y)
                    for (int x = region.x1; x < region.x2; ++x)
                        Qv::IxPixelUtil::setPixelColor(out, x, y, pixel(x, y));
                _tiles.emplace(std::pair{tx, ty}, tile);
            }
    }

    Qv::PxResult<Qv::PxImageFormat> getImageFormat() const override { return _format; }
    Qv::PxRODResult getImageROD(Qv::PxTimeStreamContext const&) const override {
        return Qv::PxRODResult(_rod, Qv::PxValidityInterval::FULL);
    }
    Qv::PxImageResult getImageResult(Qv::PxImageContext const& context) const override {
        auto const found = _tiles.find({context.getTilePosition().x, context.getTilePosition().y});
        if (context.getProxyScale() != _proxyScale || found == _tiles.end())
            return Qv::PxImageResult(allocateEmptyImageBuffer(), Qv::PxValidityInterval::FULL);
        return Qv::PxImageResult(found->second, Qv::PxValidityInterval::FULL);
    }

private:
    Qv::PxResult<Qv::PxImageFormat> _format;
    Qv::GeRectangle<float> _rod;
    int _proxyScale;
    std::map<std::pair<int, int>, Qv::IxTile> _tiles;
};

inline Qv::PxStrongHndl<Qv::PxImageProtocol> tiledFrame(Qv::IxPixelFormat const& format,
                                                        Qv::GeRectangle<int> const& frame, int proxyScale,
                                                        TiledFrameNode::Pixel const& pixel) {
    Qv::PxNode::Init init;
    Qv::PxStrongHndl<TiledFrameNode> node(new TiledFrameNode(init, format, frame, proxyScale, pixel));
    Qv::PxNode::init(node);
    return Qv::PxStrongHndl<Qv::PxImageProtocol>(node);
}

// The pixels of a 4-channel float matrix, (0, 0) at its first element.
inline TiledFrameNode::Pixel fromRgbaMat(cv::Mat const& rgba) {
    return [&rgba](int x, int y) {
        cv::Vec4f const v = rgba.at<cv::Vec4f>(y, x);
        return Qv::CoRgbaColorTyped<float>{v[0], v[1], v[2], v[3]};
    };
}

// Every tile of the node's frame at proxy 0, computed in parallel on the workers.
inline Qv::PxImageMultiTileRequest::Results
evaluateAllTiles(Qv::PxStrongHndl<Qv::PxImageProtocol const> const& node) {
    Qv::PxRequestPtr<Qv::PxImageMultiTileRequest> request(new Qv::PxImageMultiTileRequest(
        Qv::PxNodePtr<Qv::PxImageProtocol const>(node), 0, Qv::PxTimeInfo(0.0), 0));
    Qv::PxRequestMgr::getInstance().postRequest(request, 0);
    Qv::PxImageMultiTileRequest::Results results = *request->getResults();
    Qv::PxRequestMgr::getInstance().releaseRequest(request);
    keep(results.size());
    return results;
}

} // namespace QvBench
