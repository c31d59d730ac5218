#pragma once
// What the warp tests share: small images whose pixels come from a function
// of the position, evaluation of one tile or a whole frame from the test's
// thread, another tile grid or resource snapshot for the length of a test.
#include "assertions.h"
#include "btWarpUtils.h"
#include "ixPixelUtil.h"
#include "ixWriteGuard.h"
#include "pxConfig.h"
#include "pxImageMultiTileRequest.h"
#include "pxImageProtocol.h"
#include "pxRequest.h"
#include "pxRequestMgr.h"

#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <sstream>
#include <string>
#include <utility>

namespace Qv::WarpTest {

using Rgba = CoRgbaColorTyped<float>;
using PixelFn = std::function<Rgba(int x, int y)>;

// An image over a pixel region (at proxy scale 0, square pixels) whose pixel
// (x, y) is fn(x, y), in the given components, FLOAT32 unless told.
class FunctionImageNode : public PxImageProtocol {
public:
    FunctionImageNode(PxNode::Init const& init, GeRectangle<int> const& pixels, PixelFn fn,
                      IxPixelFormat::Comps comps = IxPixelFormat::RGBA, Rgba const& fill = Rgba::ZERO,
                      IxPixelFormat::Depth depth = IxPixelFormat::FLOAT32)
        : PxNode(init), PxImageProtocol(init), _rod(pixelizedToNominal(pixels, 1.0, 1.0)), _fn(std::move(fn)),
          _format(PxImageFormat(IxPixelFormat(comps, depth), Rational(24, 1)), PxValidityInterval::FULL),
          _fill(fill) {}

    PxResult<PxImageFormat> getImageFormat() const override { return _format; }
    PxRODResult getImageROD(PxTimeStreamContext const&) const override {
        return PxRODResult(_rod, PxValidityInterval::FULL);
    }
    PxImageResult getImageResult(PxImageContext const& context) const override {
        GeRectangle<int> const region =
            nominalToPixelized(_rod, 1.0, proxyScaleToFactor(context.getProxyScale()))
                .getIntersection(getTilePixels(context.getTilePosition()));
        if (region.isEmpty())
            return PxImageResult(allocateEmptyImageBuffer(_fill), PxValidityInterval::FULL);
        IxTile const tile = allocateImageBuffer(context, _fill, region);
        IxWriteGuard const out(tile);
        for (int y = region.y1; y < region.y2; ++y)
            for (int x = region.x1; x < region.x2; ++x)
                IxPixelUtil::setPixelColor(out, x, y, _fn(x, y));
        return PxImageResult(tile, PxValidityInterval::FULL);
    }

private:
    GeRectangle<float> _rod;
    PixelFn _fn;
    PxResult<PxImageFormat> _format;
    Rgba _fill;
};

template <class Node, class... Args>
PxStrongHndl<PxImageProtocol> makeNode(Args&&... args) {
    PxNode::Init init;
    PxStrongHndl<Node> node(new Node(init, std::forward<Args>(args)...));
    PxNode::init(node);
    return PxStrongHndl<PxImageProtocol>(node);
}

inline PxStrongHndl<PxImageProtocol> makeImage(GeRectangle<int> const& pixels, PixelFn fn,
                                               IxPixelFormat::Comps comps = IxPixelFormat::RGBA,
                                               Rgba const& fill = Rgba::ZERO) {
    return makeNode<FunctionImageNode>(pixels, std::move(fn), comps, fill);
}

// A vector image: (vx, vy, 0, 1) at each pixel.
inline PxStrongHndl<PxImageProtocol> makeVectors(GeRectangle<int> const& pixels,
                                                 std::function<std::pair<float, float>(int x, int y)> fn) {
    return makeImage(pixels, [fn = std::move(fn)](int x, int y) {
        auto const [vx, vy] = fn(x, y);
        return Rgba{vx, vy, 0.0f, 1.0f};
    });
}

// One tile of a node, computed on this thread as a request; a request
// cancelled as it starts stands for a user who gave up at once.
class TileRequest : public PxRequest {
public:
    TileRequest(PxStrongHndl<PxImageProtocol const> const& node, PxImageContext const& context,
                bool cancelled)
        : _node(node), _context(context), _cancelled(cancelled) {}
    void performExecute() override {
        if (_cancelled)
            cancel();
        _result = PxUPtr<PxImageProtocol const>(_node)->getImageResult(_context);
    }
    PxImageResult const& getResult() const { return _result; }

private:
    PxNodePtr<PxImageProtocol const> _node;
    PxImageContext _context;
    bool _cancelled;
    PxImageResult _result;
};

inline PxImageResult evaluateTile(PxStrongHndl<PxImageProtocol const> const& node,
                                  PxImageContext const& context, bool cancelled = false) {
    PxRequestPtr<TileRequest> const request(new TileRequest(node, context, cancelled));
    PxRequestMgr& mgr = PxRequestMgr::getInstance();
    try {
        mgr.waitForRequest(request);
    } catch (...) {
        mgr.releaseRequest(request);
        throw;
    }
    mgr.releaseRequest(request);
    return request->getResult();
}

// The tile at a pixel, at time 0, proxy scale 0, stream 0.
inline PxImageResult evaluateTileAt(PxStrongHndl<PxImageProtocol const> const& node, int x, int y) {
    return evaluateTile(node, PxImageContext(0.0, PxImageProtocol::convertPixelToTile({x, y})));
}

// Every tile of the frame, joined.
inline IxTile evaluateFrame(PxStrongHndl<PxImageProtocol const> const& node) {
    PxRequestPtr<PxImageMultiTileRequest> const request(
        new PxImageMultiTileRequest(PxNodePtr<PxImageProtocol const>(node), 0, PxTimeInfo(0.0), 0));
    PxImageMultiTileRequest::Results results;
    try {
        results = *request->getResults();
    } catch (...) {
        PxRequestMgr::getInstance().releaseRequest(request);
        throw;
    }
    PxRequestMgr::getInstance().releaseRequest(request);
    return PxImageMultiTileRequest::assembleTiles(results);
}

inline constexpr float NaN = std::numeric_limits<float>::quiet_NaN();
inline constexpr float INF = std::numeric_limits<float>::infinity();

// Another tile grid while it lives.
struct TileSize {
    explicit TileSize(int size) { PxConfig::setTileSize(size, size); }
    ~TileSize() { PxConfig::setTileSize(PxConfig::DEFAULT_TILE_SIZE, PxConfig::DEFAULT_TILE_SIZE); }
};

// Another resource snapshot for the warps while it lives.
class Resources {
public:
    Resources(int nbProc, std::uint64_t budget) {
        BtWarpUtils::storeResourceConfig();
        _nbProc = BtWarpUtils::getNbProc();
        _budget = BtWarpUtils::getBufferBudget();
        BtWarpUtils::setResourceConfig(nbProc, budget);
    }
    ~Resources() { BtWarpUtils::setResourceConfig(_nbProc, _budget); }

private:
    int _nbProc = 0;
    std::uint64_t _budget = 0;
};

// Enough memory for any number of warps over the test images.
inline constexpr std::uint64_t PLENTY = std::uint64_t(1) << 40;

// The text of the assertion the call fails, "" when it passes.
template <class F>
std::string failedAssertion(F&& call) {
    try {
        call();
    } catch (AssertionsEx::ExAssertionFailed const& error) {
        return error.getReason();
    }
    return "";
}

inline IxTile makeTile(IxPixelFormat const& format, GeRectangle<int> const& region, PixelFn const& fn) {
    IxTile tile(format, region);
    IxWriteGuard const out(tile);
    for (int y = region.y1; y < region.y2; ++y)
        for (int x = region.x1; x < region.x2; ++x)
            IxPixelUtil::setPixelColor(out, x, y, fn(x, y));
    return tile;
}

inline IxTile zeroTile(IxPixelFormat const& format, GeRectangle<int> const& region) {
    return makeTile(format, region, [](int, int) { return Rgba::ZERO; });
}

inline IxPixelFormat const RGBA32(IxPixelFormat::RGBA, IxPixelFormat::FLOAT32);
inline IxPixelFormat const ALPHA32(IxPixelFormat::ALPHA, IxPixelFormat::FLOAT32);

inline bool near(Rgba const& a, Rgba const& b, float tolerance = 1e-5f) {
    return std::abs(a.r - b.r) <= tolerance && std::abs(a.g - b.g) <= tolerance &&
           std::abs(a.b - b.b) <= tolerance && std::abs(a.a - b.a) <= tolerance;
}

// The first pixel where two images differ by more than the tolerance, as
// text; empty when they hold the same region and pixels.
inline std::string firstDifference(IxTile const& a, IxTile const& b, float tolerance = 1e-5f) {
    if (a.getPixelRegion() != b.getPixelRegion())
        return "regions " + a.getPixelRegion().dump() + " and " + b.getPixelRegion().dump();
    IxReadGuard const ga(a);
    IxReadGuard const gb(b);
    GeRectangle<int> const& r = a.getPixelRegion();
    for (int y = r.y1; y < r.y2; ++y)
        for (int x = r.x1; x < r.x2; ++x) {
            Rgba const pa = IxPixelUtil::getPixelColor(ga, x, y);
            Rgba const pb = IxPixelUtil::getPixelColor(gb, x, y);
            if (!near(pa, pb, tolerance)) {
                std::ostringstream text;
                text << "(" << x << ", " << y << "): " << pa << " against " << pb;
                return text.str();
            }
        }
    return {};
}

} // namespace Qv::WarpTest
