#pragma once
// What the motion kernel tests share: images whose pixels come from a
// function, a whole frame or one tile evaluated through the request manager,
// pixel reads and comparisons, another tile grid or resource snapshot for
// the length of a scope, the packages started once for a suite, a graph for
// the tests of tools, and the images the warp tests work out.
#include "assertions.h"
#include "btWarpUtils.h"
#include "inInitMgr.h"
#include "ixPixelUtil.h"
#include "ixWriteGuard.h"
#include "piGraph.h"
#include "piImageSocket.h"
#include "piNode.h"
#include "piOstrandToolProtocol.h"
#include "piToolRegistry.h"
#include "pxConfig.h"
#include "pxEmptyImageNode.h"
#include "pxImageMultiTileRequest.h"
#include "pxImageNode.h"
#include "pxImageProtocol.h"
#include "pxRequest.h"
#include "pxRequestMgr.h"
#include "pxValueNodes.h"

#include <atomic>
#include <cmath>
#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace Qv::MotioTest {

using Rgba = CoRgbaColorTyped<float>;
using PixelFn = std::function<Rgba(int x, int y)>;
using VectorFn = std::function<std::pair<float, float>(int x, int y)>;

// The frame rate of every test image.
inline constexpr double RATE = 24.0;

inline constexpr float NaN = std::numeric_limits<float>::quiet_NaN();
inline constexpr float INF = std::numeric_limits<float>::infinity();

inline IxPixelFormat const RGBA32(IxPixelFormat::RGBA, IxPixelFormat::FLOAT32);
inline IxPixelFormat const ALPHA32(IxPixelFormat::ALPHA, IxPixelFormat::FLOAT32);

// How a function image stores its pixels and what it shows beyond them.
struct ImageOptions {
    Rgba fill = Rgba::ZERO;
    IxPixelFormat::Comps comps = IxPixelFormat::RGBA;
    IxPixelFormat::Depth depth = IxPixelFormat::FLOAT32;
    // Each result holds for the frame asked for only, as footage does;
    // otherwise at all times.
    bool perFrame = false;
};

// An image of square pixels at 24 fps over `region` at proxy scale 0; at
// proxy p the region is the host's pixelization of it, and pixel (x, y) of
// frame f there is pixel(x, y, f, p). Outside, the tiles carry the fill.
class FunctionImageNode : public PxImageProtocol {
public:
    using Pixel = std::function<Rgba(int x, int y, double frame, int proxy)>;

    FunctionImageNode(PxNode::Init const& init, GeRectangle<int> const& region, Pixel pixel,
                      ImageOptions const& options)
        : PxNode(init), PxImageProtocol(init), _rod(pixelizedToNominal(region, 1.0, 1.0)),
          _pixel(std::move(pixel)), _options(options) {}

    PxResult<PxImageFormat> getImageFormat() const override {
        return PxResult<PxImageFormat>(
            PxImageFormat(IxPixelFormat(_options.comps, _options.depth), Rational(24, 1)),
            PxValidityInterval::FULL);
    }
    PxRODResult getImageROD(PxTimeStreamContext const&) const override {
        return PxRODResult(_rod, PxValidityInterval::FULL);
    }
    PxImageResult getImageResult(PxImageContext const& context) const override {
        PxValidityInterval const interval =
            _options.perFrame ? PxValidityInterval::createFrameInterval(RATE, context.getTime())
                              : PxValidityInterval::FULL;
        int const proxy = context.getProxyScale();
        GeRectangle<int> const region = nominalToPixelized(_rod, 1.0, proxyScaleToFactor(proxy))
                                            .getIntersection(getTilePixels(context.getTilePosition()));
        if (region.isEmpty())
            return PxImageResult(allocateEmptyImageBuffer(_options.fill), interval);
        double const frame = std::round(context.getTime() * RATE);
        IxTile const tile = allocateImageBuffer(context, _options.fill, region);
        IxWriteGuard const out(tile);
        for (int y = region.y1; y < region.y2; ++y)
            for (int x = region.x1; x < region.x2; ++x)
                IxPixelUtil::setPixelColor(out, x, y, _pixel(x, y, frame, proxy));
        return PxImageResult(tile, interval);
    }

private:
    GeRectangle<float> _rod;
    Pixel _pixel;
    ImageOptions _options;
};

template <class Node, class... Args>
PxStrongHndl<Node> make(Args&&... args) {
    PxNode::Init init;
    PxStrongHndl<Node> node(new Node(init, std::forward<Args>(args)...));
    PxNode::init(node);
    return node;
}

inline PxStrongHndl<PxImageProtocol> functionImage(GeRectangle<int> const& region,
                                                   FunctionImageNode::Pixel pixel,
                                                   ImageOptions const& options = {}) {
    return make<FunctionImageNode>(region, std::move(pixel), options);
}

// The same image at every frame and proxy scale.
inline PxStrongHndl<PxImageProtocol> functionImage(GeRectangle<int> const& region, PixelFn pixel,
                                                   ImageOptions const& options = {}) {
    return functionImage(
        region, [pixel = std::move(pixel)](int x, int y, double, int) { return pixel(x, y); }, options);
}

inline PxStrongHndl<PxImageProtocol> constantImage(GeRectangle<int> const& region, Rgba const& colour) {
    return functionImage(region, [colour](int, int) { return colour; });
}

// A vector image: (vx, vy, 0, 1) at each pixel.
inline PxStrongHndl<PxImageProtocol> vectorImage(GeRectangle<int> const& region, VectorFn fn) {
    return functionImage(region, [fn = std::move(fn)](int x, int y) {
        auto const [vx, vy] = fn(x, y);
        return Rgba{vx, vy, 0.0f, 1.0f};
    });
}

// What an unconnected input gives.
inline PxStrongHndl<PxImageProtocol> nothing() {
    return make<PxEmptyImageNode>();
}

template <class T>
PxStrongHndl<PxNode const> constantValue(T v) {
    return make<PxConstantAnimValueNode<T>>(PxResult<T>(v, PxValidityInterval::FULL));
}

// When a frame is asked for, and at which proxy scale.
struct FrameAt {
    double time = 0.0;
    int proxy = 0;
};

// Every tile of the node's frame, computed on the workers and joined;
// INVALID_TILE when no tile has pixels. `interval` (when given) receives the
// narrowest tile interval.
inline IxTile evaluateFrame(PxStrongHndl<PxImageProtocol const> const& node, FrameAt const& at = {},
                            PxValidityInterval* interval = nullptr) {
    PxRequestMgr& mgr = PxRequestMgr::getInstance();
    PxRequestPtr<PxImageMultiTileRequest> const request(new PxImageMultiTileRequest(
        PxNodePtr<PxImageProtocol const>(node), 0, PxTimeInfo(at.time), at.proxy));
    mgr.postRequest(request, 0);
    PxImageMultiTileRequest::Results results;
    try {
        results = *request->getResults();
    } catch (...) {
        mgr.releaseRequest(request);
        throw;
    }
    mgr.releaseRequest(request);
    if (interval) {
        *interval = PxValidityInterval::FULL;
        for (PxImageResult const& result : results)
            result.reduceVI(*interval);
    }
    return PxImageMultiTileRequest::assembleTiles(results);
}

// One tile of a node, computed as a request that is never posted, so on the
// waiting thread; a request cancelled as it starts stands for a user who gave
// up at once.
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

inline Rgba pixelAt(IxTile const& tile, int x, int y) {
    IxReadGuard const guard(tile);
    return IxPixelUtil::getPixelColor(guard, x, y);
}

inline ::testing::AssertionResult near(Rgba const& a, Rgba const& b, float tolerance = 1e-6f) {
    auto close = [tolerance](float u, float v) { return std::abs(u - v) <= tolerance; };
    if (close(a.r, b.r) && close(a.g, b.g) && close(a.b, b.b) && close(a.a, b.a))
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << a << " against " << b;
}

// The first pixel where two images differ by more than the tolerance, as
// text; empty when they hold the same region and pixels. A tolerance of 0
// asks for the same values to the bit.
inline std::string firstDifference(IxTile const& a, IxTile const& b, float tolerance = 1e-6f) {
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

// Another tile grid while it lives.
struct TileSize {
    explicit TileSize(int size) { PxConfig::setTileSize(size, size); }
    ~TileSize() { PxConfig::setTileSize(PxConfig::DEFAULT_TILE_SIZE, PxConfig::DEFAULT_TILE_SIZE); }
    TileSize(TileSize const&) = delete;
    TileSize& operator=(TileSize const&) = delete;
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
    Resources(Resources const&) = delete;
    Resources& operator=(Resources const&) = delete;

private:
    int _nbProc = 0;
    std::uint64_t _budget = 0;
};

// Enough memory for any number of warps over the test images.
inline constexpr std::uint64_t PLENTY = std::uint64_t(1) << 40;

// The packages started once for a suite.
class MotioTestBase : public ::testing::Test {
protected:
    static void SetUpTestSuite() { InInitMgr::getInstance().initializeAll(); }
};

// Tools as a composition sees them: a graph of its own for each test.
class MotioGraphTest : public MotioTestBase {
protected:
    // A Color Source of width by height pixels centred on the origin.
    RCShdPtr<PiNode> colorSource(std::string const& name, int width, int height,
                                 std::vector<double> const& rgb) {
        RCShdPtr<PiNode> node = _graph->createNode("Color Source", name);
        node->getInput("Width")->setConstantValue(width);
        node->getInput("Height")->setConstantValue(height);
        node->getInput("Color")->setConstantValue(rgb);
        return node;
    }

    // The tool registered under that name, null when there is none.
    static RCShdPtr<PiTool const> registeredTool(std::string const& name) {
        return PiToolRegistry::getInstance().getTool(PiOstrandToolProtocol::getOstrandToolName(name));
    }

    // What the node's output shows at the time.
    static IxTile render(RCShdPtr<PiNode> const& node, double time = 0.0) {
        return PiImageSocket<PiOutput>(node->getOutput("Output", true)).getValue(time, 0);
    }

    RCShdPtr<PiGraph> _graph{new PiGraph};
};

// The small image the warps' results are worked out on by hand: 4 by 3
// pixels from (0, 0), each of its own value.
inline GeRectangle<int> const SMALL_FRAME{0, 4, 0, 3};
inline Rgba smallValue(int x, int y) {
    return {float(x + 10 * y), float(1 + y), 0.5f, 1.0f};
}
inline Rgba mean(Rgba const& a, Rgba const& b) {
    return {(a.r + b.r) / 2, (a.g + b.g) / 2, (a.b + b.b) / 2, (a.a + b.a) / 2};
}
// A vector at one pixel, none elsewhere.
inline VectorFn vectorAt(int px, int py, float vx, float vy) {
    return [=](int x, int y) { return x == px && y == py ? std::pair{vx, vy} : std::pair{0.0f, 0.0f}; };
}

// A warp of the small image by vectors over a region, and what it gives.
struct WarpCase {
    char const* what;
    GeRectangle<int> vectorRgn;
    VectorFn vectors;
    PixelFn expected;
};

// A larger image and a smooth field that moves pixels by up to a few pixels
// each way, across tile borders and off the frame.
inline GeRectangle<int> const LARGE_FRAME{-17, 20, -9, 14};
inline Rgba largeValue(int x, int y) {
    return {std::sin(x * 0.3f) + 2.0f, std::cos(y * 0.2f) + 2.0f, 0.01f * float(x * y), 1.0f};
}
inline std::pair<float, float> smoothField(int x, int y) {
    return {3.0f * std::sin(float(x + y) / 5.0f), 2.5f * std::cos(float(x - y) / 4.0f)};
}

// A node above an image that counts the invalidations reaching it, and
// otherwise shows the image.
class InvalidationProbe : public PxImageNode {
public:
    InvalidationProbe(PxNode::Init const& init, PxNodePtr<PxImageProtocol const> const& input)
        : PxNode(init), PxImageNode(init, input) {}
    PxImageResult getImageResult(PxImageContext const& context) const override {
        return PxUPtr<PxImageProtocol const>(getInput())->getImageResult(context);
    }
    void invalidateAndReinitialize(PxValidityInterval const& interval, PxUPtr<PxNode const> const& child,
                                   int stream) override {
        PxImageNode::invalidateAndReinitialize(interval, child, stream);
        _invalidations.fetch_add(1);
    }
    int getNbInvalidations() const { return _invalidations.load(); }

private:
    std::atomic<int> _invalidations{0};
};

inline PxStrongHndl<InvalidationProbe> probe(PxStrongHndl<PxNode const> const& image) {
    return make<InvalidationProbe>(PxNodePtr<PxImageProtocol const>(image));
}

} // namespace Qv::MotioTest
