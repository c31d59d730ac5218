// Image nodes evaluated tile by tile: whole frames assembled from tiles,
// nodes that read their input's tiles, and the texture reader.
#include "ixPixelUtil.h"
#include "pxConfig.h"
#include "pxImageMultiTileRequest.h"
#include "pxImageNode.h"
#include "pxImagePassThroughNode.h"
#include "pxImageTestUtil.h"
#include "pxImageTexture.h"
#include "pxRequestMgr.h"
#include "pxTestUtil.h"

#include <gtest/gtest.h>

using namespace Qv;
using PxTest::RampImageNode;

namespace {
struct TileSize {
    explicit TileSize(int size) { PxConfig::setTileSize(size, size); }
    ~TileSize() { PxConfig::setTileSize(PxConfig::DEFAULT_TILE_SIZE, PxConfig::DEFAULT_TILE_SIZE); }
};

PxImageMultiTileRequest::Results evaluateFrame(PxNodePtr<PxImageProtocol const> const& node, int proxyScale) {
    PxRequestPtr<PxImageMultiTileRequest> request(
        new PxImageMultiTileRequest(node, 0, PxTimeInfo(0.0), proxyScale));
    PxRequestMgr::getInstance().postRequest(request, 0);
    PxImageMultiTileRequest::Results results = *request->getResults();
    PxRequestMgr::getInstance().releaseRequest(request);
    return results;
}

// Inverts the colour of its input and turns pixels outside the input into
// the given colour: the usual steps of a filter node.
class InvertNode : public PxImageNode {
public:
    InvertNode(PxNode::Init const& init, PxStrongHndl<PxImageProtocol const> const& input)
        : PxNode(init), PxImageNode(init, input) {}

    PxImageResult getImageResult(PxImageContext const& context) const override {
        PxValidityInterval interval = PxValidityInterval::FULL;
        PxUPtr<PxImageProtocol const> const input(getInput());
        GeRectangle<int> const pixels =
            computeImagePixelRegion(input, context.getTimeStreamContext(), context.getProxyScale(), interval);
        GeRectangle<int> const region = pixels.getIntersection(getTilePixels(context.getTilePosition()));
        if (region.isEmpty())
            return PxImageResult(allocateEmptyImageBuffer(), interval);
        std::vector<PxImageResult> const tiles =
            getImageTilesInRegion(context, input, interval, region, CoRgbaColorTyped<float>{0, 0, 0, 1});
        std::vector<IxReadGuard> const guards = getGuards(tiles);
        IxTile const out = allocateImageBuffer(context, region);
        IxWriteGuard const writer(out);
        for (int y = region.y1; y < region.y2; ++y)
            for (int x = region.x1; x < region.x2; ++x) {
                CoRgbaColorTyped<float> c{};
                for (IxReadGuard const& guard : guards)
                    if (guard.getPixelRegion().contains(x, y))
                        c = IxPixelUtil::getPixelColor(guard, x, y);
                IxPixelUtil::setPixelColor(writer, x, y, {1 - c.r, 1 - c.g, 1 - c.b, c.a});
            }
        return PxImageResult(out, interval);
    }
};
} // namespace

// A frame assembled from its tiles equals the frame computed in one piece,
// whatever the tile size, the proxy scale and the frame's place.
TEST(PxImageMultiTileRequest, AssembledTilesEqualTheWholeFrame) {
    struct Case {
        int tileSize;
        int proxyScale;
        GeRectangle<float> rod;
    };
    for (Case const& c : {Case{16, 0, PxImageProtocol::createCenteredNominalROD(301, 77, 1.0)},
                          Case{16, 1, PxImageProtocol::createCenteredNominalROD(301, 77, 1.0)},
                          Case{16, 0, GeRectangle<float>{5, 21, 3, 4}},
                          Case{256, 0, PxImageProtocol::createCenteredNominalROD(700, 300, 1.0)},
                          Case{256, 2, GeRectangle<float>{-1000.5f, 33.25f, 0, 513}}}) {
        TileSize const size(c.tileSize);
        auto const node = PxTest::makeNode<RampImageNode>(c.rod);
        PxImageMultiTileRequest::Results const results = evaluateFrame(node, c.proxyScale);
        GeRectangle<int> const frame = PxImageProtocol::nominalToPixelized(
            c.rod, 1.0, PxImageProtocol::proxyScaleToFactor(c.proxyScale));
        GeRectangle<int> const tiles = PxImageProtocol::convertPixelsToTiles(frame);
        EXPECT_EQ(results.size(), std::size_t(tiles.getWidth() * tiles.getHeight())) << c.rod;
        IxTile const assembled = PxImageMultiTileRequest::assembleTiles(results);
        EXPECT_TRUE(PxTest::samePixels(assembled, RampImageNode::render(frame)))
            << "tiles " << c.tileSize << " proxy " << c.proxyScale << " " << c.rod;
        EXPECT_EQ(assembled.getFillColor(), RampImageNode::FILL);
    }
}

// The region form, on a worker: the tiles that cover a region, assembled
// over it, hold exactly the part of the region inside the frame.
TEST(PxImageMultiTileRequest, ARegionGivesThePartOfTheFrameItCovers) {
    TileSize const size(16);
    GeRectangle<float> const rod{0, 100, 0, 50};
    auto const node = PxTest::makeNode<RampImageNode>(rod);
    PxNodePtr<PxImageProtocol const> const held(node);
    for (GeRectangle<int> const region : {GeRectangle<int>{10, 40, 5, 20}, GeRectangle<int>{-20, 30, 40, 70},
                                          GeRectangle<int>{200, 220, 0, 10}}) {
        IxTile assembled;
        PxTest::runAsRequest([&] {
            PxRequestPtr<PxImageMultiTileRequest> request(new PxImageMultiTileRequest(
                PxUPtr<PxImageProtocol const>(held), 0, PxTimeInfo(0.0), region, 0));
            PxRequestMgr::getInstance().postRequest(request, 0);
            assembled = PxImageMultiTileRequest::assembleTiles(*request->getResults(), region);
            PxRequestMgr::getInstance().releaseRequest(request);
        });
        GeRectangle<int> const inside = region.getIntersection({0, 100, 0, 50});
        if (inside.isEmpty()) {
            EXPECT_TRUE(assembled.isEmpty()) << region;
            continue;
        }
        EXPECT_TRUE(PxTest::samePixels(assembled, RampImageNode::render(inside))) << region;
    }
    EXPECT_FALSE(PxImageMultiTileRequest::assembleTiles({}).isValid());
}

namespace {
// Gives the whole frame for any tile of it, and counts how often.
class FullFrameRampNode : public RampImageNode {
public:
    FullFrameRampNode(PxNode::Init const& init, GeRectangle<float> const& rod)
        : PxNode(init), RampImageNode(init, rod) {}
    bool producesFullFrames() const override { return true; }
    PxImageResult getImageResult(PxImageContext const& context) const override {
        ++_nbCalls;
        GeRectangle<int> const frame =
            nominalToPixelized(getImageROD(context.getTimeStreamContext()).getROD(), 1.0,
                               proxyScaleToFactor(context.getProxyScale()));
        return PxImageResult(render(frame), PxValidityInterval::FULL);
    }
    mutable std::atomic<int> _nbCalls{0};
};
} // namespace

// A full-frame producer asked for every tile computes its frame once.
TEST(PxImageMultiTileRequest, AFullFrameProducerIsAskedOnce) {
    TileSize const size(16);
    GeRectangle<float> const rod{0, 100, 0, 50};
    auto const node = PxTest::makeNode<FullFrameRampNode>(rod);
    PxImageMultiTileRequest::Results const results = evaluateFrame(node, 0);
    EXPECT_EQ(node->_nbCalls, 1);
    ASSERT_EQ(results.size(), 1u);
    EXPECT_TRUE(PxTest::samePixels(PxImageMultiTileRequest::assembleTiles(results),
                                   RampImageNode::render({0, 100, 0, 50})));
}

TEST(PxImageNode, ReadsItsInputTilesAndGivesEmptyTilesOutsideTheFrame) {
    TileSize const size(16);
    GeRectangle<float> const rod{0, 40, 0, 20};
    auto const ramp = PxTest::makeNode<RampImageNode>(rod, Rational(1, 1), PxValidityInterval(0, 10));
    auto const invert = PxTest::makeNode<InvertNode>(PxStrongHndl<PxImageProtocol const>(ramp));
    PxNodePtr<PxImageProtocol const> const held(invert);
    PxTest::runAsRequest([&] {
        PxUPtr<PxImageProtocol const> const node(held);
        PxImageResult const outside = node->getImageResult(PxImageContext(0.0, {5, 5}));
        EXPECT_TRUE(outside.getTile().isValid());
        EXPECT_TRUE(outside.getPixelRegion().isEmpty());
        EXPECT_TRUE(outside.getVI().isNonEmpty());
        EXPECT_EQ(outside.getPixelFormat(), node->getImageFormat().getValue().getPixelFormat());

        PxImageResult const inside = node->getImageResult(PxImageContext(0.0, {2, 1}));
        EXPECT_EQ(inside.getPixelRegion(), (GeRectangle<int>{32, 40, 16, 20}));
        EXPECT_EQ(inside.getVI(), PxValidityInterval(0, 10));
        CoRgbaColorTyped<float> const c = IxPixelUtil::getPixelColor(inside.getTileGuard(), 33, 17);
        EXPECT_EQ(c, (CoRgbaColorTyped<float>{1 - 33.0f, 1 - 17.0f, 1 - 33.0f * 17.0f / 1000.0f, 1}));
    });
}

TEST(PxImageProtocol, InputTilesReadAsTheAskedFillAndPadToARegion) {
    TileSize const size(16);
    auto const ramp = PxTest::makeNode<RampImageNode>(GeRectangle<float>{0, 20, 0, 10});
    PxNodePtr<PxImageProtocol const> const held(ramp);
    PxTest::runAsRequest([&] {
        PxUPtr<PxImageProtocol const> const node(held);
        PxValidityInterval interval = PxValidityInterval::FULL;
        CoRgbaColorTyped<float> const black{0, 0, 0, 1};
        std::vector<PxImageResult> const tiles = PxImageProtocol::getImageTilesInRegion(
            PxImageContext(0.0, {0, 0}), node, interval, {-5, 18, 2, 8}, black);
        ASSERT_EQ(tiles.size(), 3u); // tiles x -1, 0 and 1, y 0
        EXPECT_TRUE(tiles[0].getPixelRegion().isEmpty());
        EXPECT_EQ(PxImageProtocol::computePixelRegion(tiles), (GeRectangle<int>{0, 20, 0, 10}));
        for (PxImageResult const& tile : tiles)
            EXPECT_EQ(IxPixelUtil::getPixelColor(tile.getTileGuard(), -3, 4), black);

        IxTile const padded = PxImageProtocol::createPaddedImage(tiles[1].getTileGuard(), {14, 18, 9, 11});
        IxReadGuard const guard(padded);
        EXPECT_EQ(IxPixelUtil::getPixelColor(guard, 15, 9), (CoRgbaColorTyped<float>{15, 9, 0.135f, 1}));
        EXPECT_EQ(IxPixelUtil::getPixelColor(guard, 16, 9), black); // the next tile's pixel: not in this one
        EXPECT_EQ(IxPixelUtil::getPixelColor(guard, 14, 10), black);
    });
}

TEST(PxImagePassThroughNode, ForwardsEveryImageOperation) {
    TileSize const size(16);
    auto const ramp = PxTest::makeNode<RampImageNode>(GeRectangle<float>{0, 20, 0, 10}, Rational(2, 1));
    auto const pass = PxTest::makeNode<PxImagePassThroughNode>(PxStrongHndl<PxImageProtocol const>(ramp));
    PxImageMultiTileRequest::Results const through = evaluateFrame(pass, 0);
    EXPECT_TRUE(PxTest::samePixels(PxImageMultiTileRequest::assembleTiles(through),
                                   PxImageMultiTileRequest::assembleTiles(evaluateFrame(ramp, 0))));
    EXPECT_EQ(pass->getImageFormat().getValue().getAspectRatio(), Rational(2, 1));
}

// Lookups at whole pixel positions give the pixels; between them the
// bilinear filter weighs the neighbours; outside, the edge or the fill.
TEST(PxImageTexture, LooksUpPixelsBetweenAndBeyondThem) {
    TileSize const size(16);
    auto const ramp = PxTest::makeNode<RampImageNode>(GeRectangle<float>{0, 40, 0, 20});
    PxNodePtr<PxImageProtocol const> const held(ramp);
    PxTest::runAsRequest([&] {
        PxUPtr<PxImageProtocol const> const node(held);
        SdTextureParams params;
        params.textureTransform.linear = GeLinearMatrix2<double>::scaling(1.0 / 40, 1.0 / 20);
        params.textureTransform.translation = {0.5 / 40, 0.5 / 20};
        params.filter = SdTextureParams::BILINEAR;
        struct Case {
            bool clamp;
            double x, y;
            CoRgbaColorTyped<double> expected;
        };
        for (Case const& c : {
                 Case{true, 17, 3, {17, 3, 0.051, 1}},
                 Case{true, 15.5, 3, {15.5, 3, 0.0465, 1}}, // across a tile border
                 Case{true, -7, 50, {0, 19, 0, 1}},
                 Case{false, -7, 50, {0.25, 0.5, 0.75, 0}},
                 Case{
                     false, 39.5, 0, {0.5 * 39 + 0.5 * 0.25, 0.5 * 0 + 0.5 * 0.5, 0.5 * 0 + 0.5 * 0.75, 0.5}},
             }) {
            params.clampX = params.clampY = c.clamp;
            PxImageTexture texture(node, PxImageContext(0.0, {0, 0}), params);
            CoRgbaColorTyped<double> const got = texture.lookup(c.x, c.y);
            EXPECT_NEAR(got.r, c.expected.r, 1e-5) << c.x << "," << c.y << " clamp " << c.clamp;
            EXPECT_NEAR(got.g, c.expected.g, 1e-5) << c.x << "," << c.y << " clamp " << c.clamp;
            EXPECT_NEAR(got.b, c.expected.b, 1e-5) << c.x << "," << c.y << " clamp " << c.clamp;
            EXPECT_NEAR(got.a, c.expected.a, 1e-5) << c.x << "," << c.y << " clamp " << c.clamp;
            PxValidityInterval interval = PxValidityInterval::FULL;
            texture.accumulateVI(interval);
            EXPECT_TRUE(interval.isNonEmpty());
        }
    });
}
