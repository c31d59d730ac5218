#pragma once
// Images for the tests of the flow kernels: a node whose pixels follow a
// function of position and frame, the evaluation of a whole frame through
// the request manager, and the tile grid set for a scope.
#include "ixPixelUtil.h"
#include "ixWriteGuard.h"
#include "pxConfig.h"
#include "pxImageMultiTileRequest.h"
#include "pxImageProtocol.h"
#include "pxRequestMgr.h"

#include <cmath>
#include <functional>

namespace Qv::LkTest {

using Rgba = CoRgbaColorTyped<float>;
constexpr double RATE = 24.0;

// RGBA FLOAT32 at 24 fps over a pixel region (square pixels, proxy 0);
// pixel (x, y) of frame f is pixel(x, y, f); valid over the frame asked for.
class FunctionImageNode : public PxImageProtocol {
public:
    using Pixel = std::function<Rgba(int x, int y, double frame)>;

    FunctionImageNode(PxNode::Init const& init, GeRectangle<int> const& region, Pixel pixel)
        : PxNode(init), PxImageProtocol(init), _region(region), _pixel(std::move(pixel)) {}

    PxResult<PxImageFormat> getImageFormat() const override {
        return PxResult<PxImageFormat>(
            PxImageFormat(IxPixelFormat(IxPixelFormat::RGBA, IxPixelFormat::FLOAT32), Rational(24, 1)),
            PxValidityInterval::FULL);
    }
    PxRODResult getImageROD(PxTimeStreamContext const&) const override {
        return PxRODResult(pixelizedToNominal(_region, 1.0, 1.0), PxValidityInterval::FULL);
    }
    PxImageResult getImageResult(PxImageContext const& context) const override {
        PxValidityInterval const frame = PxValidityInterval::createFrameInterval(RATE, context.getTime());
        GeRectangle<int> const region = _region.getIntersection(getTilePixels(context.getTilePosition()));
        if (region.isEmpty())
            return PxImageResult(allocateEmptyImageBuffer(), frame);
        double const number = std::round(context.getTime() * RATE);
        IxTile tile = allocateImageBuffer(context, region);
        IxWriteGuard const out(tile);
        for (int y = region.y1; y < region.y2; ++y)
            for (int x = region.x1; x < region.x2; ++x)
                IxPixelUtil::setPixelColor(out, x, y, _pixel(x, y, number));
        return PxImageResult(tile, frame);
    }

private:
    GeRectangle<int> _region;
    Pixel _pixel;
};

template <class Node, class... Args>
PxStrongHndl<Node> make(Args&&... args) {
    PxNode::Init init;
    PxStrongHndl<Node> node(new Node(init, std::forward<Args>(args)...));
    PxNode::init(node);
    return node;
}

inline PxStrongHndl<PxImageProtocol> functionImage(GeRectangle<int> const& region,
                                                   FunctionImageNode::Pixel pixel) {
    return make<FunctionImageNode>(region, std::move(pixel));
}

// Every tile of the node's frame at the time, run on the workers, and the
// tiles joined; `interval` (when given) receives the narrowest tile interval.
inline IxTile evaluateFrame(PxStrongHndl<PxImageProtocol const> const& node, double time,
                            PxValidityInterval* interval = nullptr) {
    PxRequestPtr<PxImageMultiTileRequest> request(
        new PxImageMultiTileRequest(PxNodePtr<PxImageProtocol const>(node), 0, PxTimeInfo(time), 0));
    PxRequestMgr::getInstance().postRequest(request, 0);
    PxImageMultiTileRequest::Results const results = *request->getResults();
    PxRequestMgr::getInstance().releaseRequest(request);
    if (interval) {
        *interval = PxValidityInterval::FULL;
        for (PxImageResult const& result : results)
            result.reduceVI(*interval);
    }
    return PxImageMultiTileRequest::assembleTiles(results);
}

inline Rgba pixelAt(IxTile const& tile, int x, int y) {
    IxReadGuard const guard(tile);
    return IxPixelUtil::getPixelColor(guard, x, y);
}

// The tile grid for the length of a scope.
struct TileSize {
    explicit TileSize(int size) { PxConfig::setTileSize(size, size); }
    ~TileSize() { PxConfig::setTileSize(PxConfig::DEFAULT_TILE_SIZE, PxConfig::DEFAULT_TILE_SIZE); }
    TileSize(TileSize const&) = delete;
    TileSize& operator=(TileSize const&) = delete;
};

} // namespace Qv::LkTest
