// The coarse-to-fine driver: its level arithmetic, the motion cache chain,
// the units of what it serves, and how it behaves with many askers, failures
// and changes upstream.
#include "btMotioTool.h"
#include "btPxMotioCacheNode.h"
#include "btPxMotioNode.h"
#include "btPxMotioOutputNode.h"
#include "motioTestSupport.h"
#include "pxEx.h"

#include <atomic>
#include <cmath>
#include <stdexcept>
#include <thread>

namespace Qv::MotioTest {
namespace {

using Levels = BtPxMotioNode::Levels;

// A smooth texture that moves by (dx, dy) pixels a frame: frame f shows the
// texture at (x - f dx, y - f dy).
Rgba texture(double x, double y) {
    double const v = 0.5 + 0.12 * std::sin(0.31 * x + 0.17 * y) + 0.1 * std::cos(0.23 * y - 0.11 * x + 1.0) +
                     0.06 * std::sin(0.07 * x + 0.05 * y + 2.0);
    float const f = static_cast<float>(v);
    return Rgba{f, f, f, 1.0f};
}

PxStrongHndl<PxImageProtocol> movingTexture(GeRectangle<int> const& region, double dx, double dy) {
    return functionImage(region,
                         [dx, dy](int x, int y, double frame, int proxy) {
                             double const s = std::ldexp(1.0, proxy);
                             return texture(x * s - frame * dx, y * s - frame * dy);
                         },
                         {.perFrame = true});
}

// The moving texture in pixels twice as wide as high: a pixel of it covers
// two nominal (square) pixels across.
class WidePixelTexture : public PxImageProtocol {
public:
    static constexpr double ASPECT = 2.0;

    WidePixelTexture(PxNode::Init const& init, GeRectangle<int> const& region, double dx, double dy)
        : PxNode(init), PxImageProtocol(init), _rod(pixelizedToNominal(region, ASPECT, 1.0)), _dx(dx),
          _dy(dy) {}

    PxResult<PxImageFormat> getImageFormat() const override {
        return PxResult<PxImageFormat>(
            PxImageFormat(IxPixelFormat(IxPixelFormat::RGBA, IxPixelFormat::FLOAT32, Rational(2, 1)),
                          Rational(24, 1)),
            PxValidityInterval::FULL);
    }
    PxRODResult getImageROD(PxTimeStreamContext const&) const override {
        return PxRODResult(_rod, PxValidityInterval::FULL);
    }
    PxImageResult getImageResult(PxImageContext const& context) const override {
        PxValidityInterval const interval = PxValidityInterval::createFrameInterval(RATE, context.getTime());
        int const proxy = context.getProxyScale();
        GeRectangle<int> const region = nominalToPixelized(_rod, ASPECT, proxyScaleToFactor(proxy))
                                            .getIntersection(getTilePixels(context.getTilePosition()));
        if (region.isEmpty())
            return PxImageResult(allocateEmptyImageBuffer(), interval);
        double const frame = std::round(context.getTime() * RATE);
        double const s = std::ldexp(1.0, proxy);
        IxTile const tile = allocateImageBuffer(context, region);
        IxWriteGuard const out(tile);
        for (int y = region.y1; y < region.y2; ++y)
            for (int x = region.x1; x < region.x2; ++x)
                IxPixelUtil::setPixelColor(out, x, y, texture(x * s - frame * _dx, y * s - frame * _dy));
        return PxImageResult(tile, interval);
    }

private:
    GeRectangle<float> _rod;
    double _dx;
    double _dy;
};

struct Chain {
    PxStrongHndl<BtPxMotioNode> node;
    PxStrongHndl<PxImageProtocol> forward;
    PxStrongHndl<PxImageProtocol> backward;
};

Chain makeChain(PxStrongHndl<PxImageProtocol> const& image, PxStrongHndl<PxNode const> const& quality) {
    Chain chain;
    chain.node = BtMotioTool::createPxNode(PxStrongHndl<PxNode const>(image), quality, nullptr, {});
    PxStrongHndl<BtPxMotioNode const> const node(chain.node);
    chain.forward = BtPxMotioOutputNode<BtPxMotioNode>::create(node, BtMotioTypes::FORWARD_VECTORS);
    chain.backward = BtPxMotioOutputNode<BtPxMotioNode>::create(node, BtMotioTypes::BACKWARD_VECTORS);
    return chain;
}

Chain makeChain(PxStrongHndl<PxImageProtocol> const& image, int quality = 0) {
    return makeChain(image, constantValue(quality));
}

// Mean vector over the pixels `margin` or more inside the tile.
std::pair<double, double> meanVector(IxTile const& tile, int margin) {
    IxReadGuard const guard(tile);
    GeRectangle<int> const& r = tile.getPixelRegion();
    double sx = 0.0;
    double sy = 0.0;
    int n = 0;
    for (int y = r.y1 + margin; y < r.y2 - margin; ++y)
        for (int x = r.x1 + margin; x < r.x2 - margin; ++x) {
            Rgba const v = IxPixelUtil::getPixelColor(guard, x, y);
            sx += v.r;
            sy += v.g;
            ++n;
        }
    return {sx / n, sy / n};
}

float maxAbsDifference(IxTile const& a, IxTile const& b) {
    IxReadGuard const ga(a);
    IxReadGuard const gb(b);
    GeRectangle<int> const& r = a.getPixelRegion();
    float worst = 0.0f;
    for (int y = r.y1; y < r.y2; ++y)
        for (int x = r.x1; x < r.x2; ++x) {
            Rgba const pa = IxPixelUtil::getPixelColor(ga, x, y);
            Rgba const pb = IxPixelUtil::getPixelColor(gb, x, y);
            worst = std::max({worst, std::abs(pa.r - pb.r), std::abs(pa.g - pb.g)});
        }
    return worst;
}

constexpr double FRAME = 1.0 / RATE;

class MotioDriverTest : public MotioTestBase {};

TEST_F(MotioDriverTest, LevelsFollowTheSmallerSideAndTheQuality) {
    struct Case {
        int minDimension;
        int quality;
        int maxProxyScale;
        int analysisLevel;
    };
    for (Case const& c : {
             Case{5, 0, 0, 0},    // L = 3: one level
             Case{8, 0, 0, 0},    // still L = 3
             Case{9, 0, 1, 0},    // L = 4
             Case{240, 0, 5, 0},  // the accuracy pairs
             Case{1080, 0, 8, 0}, // HD: levels 8 to 0
             Case{2048, 0, 8, 0}, // the largest side analysed at full size
             Case{2049, 0, 9, 1}, // one pixel more: level 0 is upscaled
             Case{2160, 0, 9, 1}, // UHD
             Case{4096, 0, 9, 1}, // L = 12
             Case{1080, 3, 8, 3}, // quality asks for a coarser analysis
             Case{40, 6, 3, 6},   // quality beyond the pyramid: no level analysed
             Case{4, 0, -1, 0},   // under the analysis window
         }) {
        Levels const levels = BtPxMotioNode::getLevels(c.minDimension, c.quality);
        EXPECT_EQ(levels.maxProxyScale, c.maxProxyScale) << c.minDimension;
        EXPECT_EQ(levels.analysisLevel, c.analysisLevel) << c.minDimension << " quality " << c.quality;
    }
    std::vector<int> hd;
    for (int p = 8; p >= 0; --p)
        hd.push_back(BtPxMotioNode::getNbIterations(p));
    EXPECT_EQ(hd, (std::vector<int>{4, 4, 4, 4, 4, 4, 3, 2, 1}));
}

TEST_F(MotioDriverTest, CacheChainHandsCoarseLevelsToItsChild) {
    int const n = StImageCacheBaseNode::getNbDiskCachedProxyScales();
    GeRectangle<int> const frame{0, 32, 0, 24};
    auto const image = constantImage(frame, Rgba{0.5f, 0.5f, 0.5f, 1.0f});
    PxStrongHndl<PxNode const> const quality = constantValue(0);
    auto const inner =
        BtPxMotioCacheNode::create(nullptr, {}, PxStrongHndl<PxNode const>(image), quality, nullptr);
    auto const outer = BtPxMotioCacheNode::create(nullptr, {}, PxStrongHndl<PxNode const>(image), quality,
                                                  PxStrongHndl<BtPxMotioCacheNode const>(inner));
    EXPECT_EQ(outer->getProxyOffset(), 0);
    EXPECT_EQ(inner->getProxyOffset(), n);
    EXPECT_NE(outer->getStorageId(), inner->getStorageId());

    IxPixelFormat const half(IxPixelFormat::RGB, IxPixelFormat::FLOAT16);
    auto const stored = [&](int proxy, float value) {
        GeRectangle<int> const tile = PxImageProtocol::getTilePixels({0, 0}).getIntersection({0, 1, 0, 1});
        PxImageResult const result(makeTile(half, tile,
                                            [value](int, int) {
                                                return Rgba{value, 0, 0, 1};
                                            }),
                                   PxValidityInterval::FULL);
        outer->setCachedImageResult(result, PxImageContext(0.0, {0, 0}, proxy));
    };
    auto const readFrom = [](PxStrongHndl<BtPxMotioCacheNode> const& cache, int proxy) {
        return evaluateTile(PxStrongHndl<PxImageProtocol const>(cache), PxImageContext(0.0, {0, 0}, proxy));
    };
    stored(n - 1, 1.0f);
    stored(n, 2.0f);
    // N - 1 stays in the outer cache, N is the child's proxy 0.
    EXPECT_EQ(pixelAt(readFrom(outer, n - 1).getTile(), 0, 0).r, 1.0f);
    EXPECT_TRUE(readFrom(inner, n - 1).getVI().isEmpty());
    EXPECT_EQ(pixelAt(readFrom(inner, 0).getTile(), 0, 0).r, 2.0f);
    EXPECT_EQ(pixelAt(readFrom(outer, n).getTile(), 0, 0).r, 2.0f);
    // A miss: an empty interval, a tile that reads as no motion.
    PxImageResult const miss = readFrom(outer, 1);
    EXPECT_TRUE(miss.getVI().isEmpty());
    EXPECT_EQ(miss.getFillColor(), Rgba::ZERO);
    // Beyond the chain.
    EXPECT_EQ(failedAssertion([&] { stored(2 * n, 3.0f); }), "!_childCache.isNull()");
}

TEST_F(MotioDriverTest, IdenticalFramesGiveExactlyZero) {
    auto const image = movingTexture({0, 48, 0, 40}, 0.0, 0.0);
    Chain const chain = makeChain(image);
    for (auto const& [output, time] : {std::pair{chain.forward, 0.0}, std::pair{chain.backward, FRAME}}) {
        IxTile const vectors = evaluateFrame(PxStrongHndl<PxImageProtocol const>(output), {time, 0});
        ASSERT_TRUE(vectors.isValid());
        EXPECT_EQ(
            firstDifference(vectors, zeroTile(vectors.getPixelFormat(), vectors.getPixelRegion()), 0.0f), "");
    }
}

// Vectors in nominal pixels: at proxy 1 the same displacement, not halved;
// with pixels twice as wide as high, x counts square pixels.
TEST_F(MotioDriverTest, VectorsAreNominal) {
    struct Case {
        int proxy;
        double dx, dy;
    };
    auto const image = movingTexture({0, 96, 0, 64}, 3.0, -2.0);
    Chain const chain = makeChain(image);
    for (Case const& c : {Case{0, 3.0, -2.0}, Case{1, 3.0, -2.0}}) {
        IxTile const forward =
            evaluateFrame(PxStrongHndl<PxImageProtocol const>(chain.forward), {0.0, c.proxy});
        auto const [mx, my] = meanVector(forward, 12 >> c.proxy);
        EXPECT_NEAR(mx, c.dx, 0.15) << "proxy " << c.proxy;
        EXPECT_NEAR(my, c.dy, 0.15) << "proxy " << c.proxy;
        IxTile const backward =
            evaluateFrame(PxStrongHndl<PxImageProtocol const>(chain.backward), {FRAME, c.proxy});
        auto const [bx, by] = meanVector(backward, 12 >> c.proxy);
        EXPECT_NEAR(bx, -c.dx, 0.15) << "proxy " << c.proxy;
        EXPECT_NEAR(by, -c.dy, 0.15) << "proxy " << c.proxy;
    }
    EXPECT_EQ(chain.node->getNbAnalyses(), 2u);
}

// Tiles of another size sum the forward warp's splats in another order: the
// last bit of a float may differ, and once rounded to half floats in the
// cache, one step of a half float (under a thousandth below one pixel).
// A shift of 3 of the image's own pixels, each two square pixels wide, is 6
// nominal pixels across; rows are square already.
TEST_F(MotioDriverTest, WidePixelsCountInSquarePixels) {
    Chain const chain = makeChain(make<WidePixelTexture>(GeRectangle<int>{0, 64, 0, 64}, 3.0, -2.0));
    IxTile const forward = evaluateFrame(PxStrongHndl<PxImageProtocol const>(chain.forward));
    auto const [mx, my] = meanVector(forward, 12);
    EXPECT_NEAR(mx, 6.0, 0.3);
    EXPECT_NEAR(my, -2.0, 0.15);
}

TEST_F(MotioDriverTest, TileSizesAgree) {
    IxTile reference;
    for (int size : {256, 16}) {
        TileSize const tiles(size);
        auto const image = movingTexture({0, 80, 0, 56}, 0.75, -0.6);
        Chain const chain = makeChain(image);
        IxTile const vectors = evaluateFrame(PxStrongHndl<PxImageProtocol const>(chain.forward));
        if (!reference.isValid()) {
            reference = vectors;
            continue;
        }
        ASSERT_EQ(vectors.getPixelRegion(), reference.getPixelRegion());
        EXPECT_LE(maxAbsDifference(vectors, reference), 1e-3f);
    }
}

TEST_F(MotioDriverTest, ThreadsAskingDifferentTilesShareOneAnalysis) {
    TileSize const tiles(16);
    auto const image = movingTexture({0, 64, 0, 48}, 1.0, 1.0);
    Chain const chain = makeChain(image);
    PxStrongHndl<PxImageProtocol const> const forward(chain.forward);
    std::atomic<int> ready{0};
    auto const ask = [&](GePoint2<int> tile) {
        ready.fetch_add(1);
        while (ready.load() < 2)
            std::this_thread::yield();
        return evaluateTile(forward, PxImageContext(0.0, tile));
    };
    PxImageResult a;
    PxImageResult b;
    std::thread first([&] { a = ask({0, 0}); });
    std::thread second([&] { b = ask({3, 2}); });
    first.join();
    second.join();
    EXPECT_EQ(chain.node->getNbAnalyses(), 1u);
    EXPECT_FALSE(a.getPixelRegion().isEmpty());
    EXPECT_FALSE(b.getPixelRegion().isEmpty());
}

TEST_F(MotioDriverTest, FailedAnalysisLeavesNoPyramid) {
    std::atomic<bool> failing{true};
    GeRectangle<int> const frame{0, 64, 0, 48};
    auto const image = functionImage(frame,
                                     [&failing](int x, int y, double frame, int proxy) {
                                         // The finest level fails: the coarser ones are cached by then.
                                         if (failing.load() && proxy == 0)
                                             throw std::runtime_error("frame unreadable");
                                         double const s = std::ldexp(1.0, proxy);
                                         return texture(x * s - frame, y * s);
                                     },
                                     {.perFrame = true});
    Chain const chain = makeChain(image);
    PxStrongHndl<PxImageProtocol const> const forward(chain.forward);
    EXPECT_THROW(evaluateFrame(forward), std::runtime_error);
    // Nothing of the failed analysis is served, at any level: even the
    // coarse one, done before the failure, is analysed again.
    failing = false;
    IxTile const coarse = evaluateFrame(forward, {0.0, 2});
    EXPECT_EQ(chain.node->getNbAnalyses(), 2u);
    auto const [mx, my] = meanVector(evaluateFrame(forward), 12);
    EXPECT_NEAR(mx, 1.0, 0.15);
    EXPECT_NEAR(my, 0.0, 0.15);
    EXPECT_TRUE(coarse.isValid());
}

TEST_F(MotioDriverTest, QualityChangeInvalidates) {
    auto const image = movingTexture({0, 64, 0, 48}, 2.0, 0.0);
    PxStrongHndl<PxValueNode<int>> const quality =
        make<PxValueNode<int>>(PxResult<int>(0, PxValidityInterval::FULL));
    Chain const chain = makeChain(image, PxStrongHndl<PxNode const>(quality));
    PxStrongHndl<PxImageProtocol const> const forward(chain.forward);
    IxTile const full = evaluateFrame(forward);
    (void)evaluateFrame(forward);
    EXPECT_EQ(chain.node->getNbAnalyses(), 1u);
    quality->setValue(PxResult<int>(2, PxValidityInterval::FULL));
    IxTile const quarter = evaluateFrame(forward);
    EXPECT_EQ(chain.node->getNbAnalyses(), 2u);
    // A coarser analysis, upscaled: close, but not the same vectors.
    EXPECT_GT(maxAbsDifference(full, quarter), 0.0f);
    auto const [mx, my] = meanVector(quarter, 12);
    EXPECT_NEAR(mx, 2.0, 0.3);
    EXPECT_NEAR(my, 0.0, 0.3);
}

// Tiles of proxy scales above the pyramid are the top level's first vector;
// a frame too small for the analysis window has no motion; an empty one no pixels.
TEST_F(MotioDriverTest, DegenerateFramesNeverAnalyse) {
    auto const tiny = movingTexture({0, 4, 0, 30}, 1.0, 0.0);
    Chain const small = makeChain(tiny);
    IxTile const none = evaluateFrame(PxStrongHndl<PxImageProtocol const>(small.forward));
    ASSERT_TRUE(none.isValid());
    EXPECT_EQ(firstDifference(none, zeroTile(none.getPixelFormat(), none.getPixelRegion()), 0.0f), "");
    EXPECT_EQ(small.node->getNbAnalyses(), 0u);

    // A quality coarser than the whole pyramid: no level analysed, no motion.
    Chain const coarse = makeChain(movingTexture({0, 64, 0, 48}, 2.0, 0.0), 6);
    IxTile const still = evaluateFrame(PxStrongHndl<PxImageProtocol const>(coarse.forward));
    ASSERT_TRUE(still.isValid());
    EXPECT_EQ(firstDifference(still, zeroTile(still.getPixelFormat(), still.getPixelRegion()), 0.0f), "");

    Chain const empty = makeChain(nothing());
    EXPECT_FALSE(evaluateFrame(PxStrongHndl<PxImageProtocol const>(empty.forward)).isValid());

    auto const image = movingTexture({0, 40, 0, 40}, 1.0, 0.0); // maxProxyScale 3
    Chain const chain = makeChain(image);
    PxStrongHndl<PxImageProtocol const> const forward(chain.forward);
    IxTile const top = evaluateFrame(forward, {0.0, 3});
    IxTile const above = evaluateFrame(forward, {0.0, 5});
    ASSERT_TRUE(above.isValid());
    Rgba const corner = pixelAt(top, top.getPixelRegion().x1, top.getPixelRegion().y1);
    EXPECT_EQ(firstDifference(above, makeTile(above.getPixelFormat(), above.getPixelRegion(),
                                              [corner](int, int) { return corner; })),
              "");
}

TEST_F(MotioDriverTest, NonFinitePixelsNeverCrash) {
    auto const image = functionImage({0, 40, 0, 32},
                                     [](int x, int y, double frame, int) {
                                         if ((x + y) % 7 == 0)
                                             return Rgba{NaN, INF, -INF, 1.0f};
                                         return texture(x - frame, y);
                                     },
                                     {.perFrame = true});
    Chain const chain = makeChain(image);
    IxTile const vectors = evaluateFrame(PxStrongHndl<PxImageProtocol const>(chain.forward));
    EXPECT_TRUE(vectors.isValid());
}

TEST_F(MotioDriverTest, DirectTileRequestsOnTheMotionNodeAreRefused) {
    auto const image = movingTexture({0, 16, 0, 16}, 0.0, 0.0);
    Chain const chain = makeChain(image);
    try {
        (void)evaluateTile(PxStrongHndl<PxImageProtocol const>(chain.node), PxImageContext(0.0, {0, 0}));
        FAIL() << "no exception";
    } catch (std::logic_error const& error) {
        EXPECT_STREQ(error.what(), "Invalid call to unimplementable BtPxMotioNode::getImageResult()");
    }
}

} // namespace
} // namespace Qv::MotioTest
