#pragma once
// Small images for the tests of the diffusion, upscale and vector increment
// kernels: a node whose pixels follow a function of position and proxy
// level, whole-frame evaluation through the request manager, and the tile
// grid set for a scope.
#include "inInitMgr.h"
#include "ixPixelUtil.h"
#include "ixWriteGuard.h"
#include "pxConfig.h"
#include "pxEmptyImageNode.h"
#include "pxImageMultiTileRequest.h"
#include "pxImageProtocol.h"
#include "pxRequestMgr.h"
#include "pxValueNodes.h"

#include <functional>
#include <gtest/gtest.h>

namespace Qv::KernelTest {

using Rgba = CoRgbaColorTyped<float>;

// FLOAT32 pixels of square aspect over `region` at proxy 0; at proxy p the
// region is the host's pixelization of it, and pixel (x, y) there is
// pixel(x, y, p). Outside, the tiles carry `fill`.
class ProxyImageNode : public PxImageProtocol {
public:
    using Pixel = std::function<Rgba(int x, int y, int proxy)>;

    ProxyImageNode(PxNode::Init const& init, GeRectangle<int> const& region, Pixel pixel, Rgba const& fill,
                   IxPixelFormat::Comps comps)
        : PxNode(init), PxImageProtocol(init), _rod(pixelizedToNominal(region, 1.0, 1.0)),
          _pixel(std::move(pixel)), _fill(fill), _comps(comps) {}

    PxResult<PxImageFormat> getImageFormat() const override {
        return PxResult<PxImageFormat>(
            PxImageFormat(IxPixelFormat(_comps, IxPixelFormat::FLOAT32), Rational(24, 1)),
            PxValidityInterval::FULL);
    }
    PxRODResult getImageROD(PxTimeStreamContext const&) const override {
        return PxRODResult(_rod, PxValidityInterval::FULL);
    }
    PxImageResult getImageResult(PxImageContext const& context) const override {
        int const proxy = context.getProxyScale();
        GeRectangle<int> const region = nominalToPixelized(_rod, 1.0, proxyScaleToFactor(proxy))
                                            .getIntersection(getTilePixels(context.getTilePosition()));
        if (region.isEmpty())
            return PxImageResult(allocateEmptyImageBuffer(_fill), PxValidityInterval::FULL);
        IxTile tile = allocateImageBuffer(context, _fill, region);
        IxWriteGuard const out(tile);
        for (int y = region.y1; y < region.y2; ++y)
            for (int x = region.x1; x < region.x2; ++x)
                IxPixelUtil::setPixelColor(out, x, y, _pixel(x, y, proxy));
        return PxImageResult(tile, PxValidityInterval::FULL);
    }

private:
    GeRectangle<float> _rod;
    Pixel _pixel;
    Rgba _fill;
    IxPixelFormat::Comps _comps;
};

template <class Node, class... Args>
PxStrongHndl<Node> make(Args&&... args) {
    PxNode::Init init;
    PxStrongHndl<Node> node(new Node(init, std::forward<Args>(args)...));
    PxNode::init(node);
    return node;
}

inline PxStrongHndl<PxNode const> image(GeRectangle<int> const& region, ProxyImageNode::Pixel pixel,
                                        Rgba const& fill = Rgba::ZERO,
                                        IxPixelFormat::Comps comps = IxPixelFormat::RGBA) {
    return make<ProxyImageNode>(region, std::move(pixel), fill, comps);
}

inline PxStrongHndl<PxNode const> constantImage(GeRectangle<int> const& region, Rgba const& colour) {
    return image(region, [colour](int, int, int) { return colour; });
}

// What an unconnected input gives.
inline PxStrongHndl<PxNode const> nothing() {
    return make<PxEmptyImageNode>();
}

template <class T>
PxStrongHndl<PxNode const> value(T v) {
    return make<PxConstantAnimValueNode<T>>(PxResult<T>(v, PxValidityInterval::FULL));
}

// Every tile of the node's frame at the proxy scale, joined; INVALID_TILE
// when no tile has pixels.
inline IxTile evaluateFrame(PxStrongHndl<PxImageProtocol const> const& node, int proxy = 0) {
    PxRequestPtr<PxImageMultiTileRequest> request(
        new PxImageMultiTileRequest(PxNodePtr<PxImageProtocol const>(node), 0, PxTimeInfo(0.0), proxy));
    PxRequestMgr::getInstance().postRequest(request, 0);
    PxImageMultiTileRequest::Results const results = *request->getResults();
    PxRequestMgr::getInstance().releaseRequest(request);
    return PxImageMultiTileRequest::assembleTiles(results);
}

inline Rgba pixelAt(IxTile const& tile, int x, int y) {
    IxReadGuard const guard(tile);
    return IxPixelUtil::getPixelColor(guard, x, y);
}

// Both tiles have the same region and the same values, to the bit.
inline ::testing::AssertionResult samePixels(IxTile const& a, IxTile const& b) {
    if (a.getPixelRegion() != b.getPixelRegion())
        return ::testing::AssertionFailure() << a.getPixelRegion() << " against " << b.getPixelRegion();
    IxReadGuard const ga(a);
    IxReadGuard const gb(b);
    GeRectangle<int> const& r = a.getPixelRegion();
    for (int y = r.y1; y < r.y2; ++y)
        for (int x = r.x1; x < r.x2; ++x)
            if (!(IxPixelUtil::getPixelColor(ga, x, y) == IxPixelUtil::getPixelColor(gb, x, y)))
                return ::testing::AssertionFailure()
                       << "(" << x << ", " << y << "): " << IxPixelUtil::getPixelColor(ga, x, y)
                       << " against " << IxPixelUtil::getPixelColor(gb, x, y);
    return ::testing::AssertionSuccess();
}

inline ::testing::AssertionResult near(Rgba const& a, Rgba const& b, float tolerance = 1e-6f) {
    auto close = [tolerance](float u, float v) { return std::abs(u - v) <= tolerance; };
    if (close(a.r, b.r) && close(a.g, b.g) && close(a.b, b.b) && close(a.a, b.a))
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << a << " against " << b;
}

// The tile grid for the length of a scope.
struct TileSize {
    explicit TileSize(int size) { PxConfig::setTileSize(size, size); }
    ~TileSize() { PxConfig::setTileSize(PxConfig::DEFAULT_TILE_SIZE, PxConfig::DEFAULT_TILE_SIZE); }
    TileSize(TileSize const&) = delete;
    TileSize& operator=(TileSize const&) = delete;
};

// The packages started once for a suite.
class KernelTestBase : public ::testing::Test {
protected:
    static void SetUpTestSuite() { InInitMgr::getInstance().initializeAll(); }
};

} // namespace Qv::KernelTest
