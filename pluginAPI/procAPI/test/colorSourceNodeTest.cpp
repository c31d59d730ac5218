// The colour source node: one colour over the generated region, the fill
// colour outside it, results that hold as long as every value they read.
#include "ixPixelUtil.h"
#include "pxColorSourceNode.h"
#include "pxConfig.h"
#include "pxEmptyImageNode.h"
#include "pxImageFormatProtocol.h"
#include "pxImageMultiTileRequest.h"
#include "pxImageTestUtil.h"
#include "pxTestUtil.h"
#include "pxValueNodes.h"

#include <gtest/gtest.h>
#include <limits>

using namespace Qv;

namespace {

struct SmallTiles {
    SmallTiles() { PxConfig::setTileSize(16, 16); }
    ~SmallTiles() { PxConfig::setTileSize(PxConfig::DEFAULT_TILE_SIZE, PxConfig::DEFAULT_TILE_SIZE); }
};

template <class T>
PxStrongHndl<PxNode const> constant(T const& value, PxValidityInterval const& vi = PxValidityInterval::FULL) {
    return PxTest::makeNode<PxConstantAnimValueNode<T>>(PxResult<T>(value, vi));
}

struct Source {
    int width = 40;
    int height = 30;
    Rational aspect{1, 1};
    IxPixelFormat::Depth depth = IxPixelFormat::FLOAT32;
    CoRgbaColorTyped<float> colour{0.25f, 0.5f, 1.5f, 2.0f};
    CoRgbaColorTyped<float> fill{0, 0, 0, 0};
    PxValidityInterval widthVI = PxValidityInterval::FULL;
    PxValidityInterval colourVI = PxValidityInterval::FULL;

    PxStrongHndl<PxColorSourceNode> make() const {
        PxStrongHndl<PxNode const> format = PxTest::makeNode<PxImageFormatNode>(
            PxImageFormat(IxPixelFormat(IxPixelFormat::RGBA, depth, aspect), Rational(25, 1)));
        return PxTest::makeNode<PxColorSourceNode>(
            format, constant(width, widthVI), constant(height),
            constant(CoRgbColorTyped<float>{fill.r, fill.g, fill.b}), constant(double(fill.a)),
            constant(CoRgbColorTyped<float>{colour.r, colour.g, colour.b}, colourVI),
            constant(double(colour.a)));
    }
};

PxImageMultiTileRequest::Results frame(PxStrongHndl<PxColorSourceNode> const& node, int proxyScale) {
    PxRequestPtr<PxImageMultiTileRequest> request(
        new PxImageMultiTileRequest(PxNodePtr<PxImageProtocol const>(node), 0, PxTimeInfo(1.0), proxyScale));
    PxRequestMgr::getInstance().postRequest(request, 0);
    PxImageMultiTileRequest::Results results = *request->getResults();
    PxRequestMgr::getInstance().releaseRequest(request);
    return results;
}

// Every pixel of the tile is `colour`.
bool filledWith(IxTile const& tile, CoRgbaColorTyped<float> const& colour) {
    IxReadGuard const guard(tile);
    GeRectangle<int> const& r = tile.getPixelRegion();
    for (int y = r.y1; y < r.y2; ++y)
        for (int x = r.x1; x < r.x2; ++x)
            if (!(IxPixelUtil::getPixelColor(guard, x, y) == colour))
                return false;
    return true;
}

} // namespace

TEST(ColorSourceNode, FillsItsRegionWithItsColourAndReportsTheFillOutside) {
    SmallTiles const tiles;
    float const huge = std::numeric_limits<float>::max();
    struct Case {
        char const* what;
        Source source;
        int proxyScale;
        GeRectangle<int> region;
    };
    Source outOfRange;
    outOfRange.colour = {-3.0f, huge, 1e-30f, -1.0f};
    Source half;
    half.depth = IxPixelFormat::FLOAT16;
    Source filled;
    filled.fill = {0.1f, 0.2f, 0.3f, 0.4f};
    Source odd;
    odd.width = 33;
    odd.height = 17;
    Source wide;
    wide.aspect = Rational(2, 1);
    wide.width = 20;
    Case const cases[] = {
        {"a float image", Source{}, 0, {-20, 20, -15, 15}},
        {"values beyond 0 to 1 pass unchanged", outOfRange, 0, {-20, 20, -15, 15}},
        {"half floats keep these values exactly", half, 0, {-20, 20, -15, 15}},
        {"a fill colour of its own", filled, 0, {-20, 20, -15, 15}},
        {"an odd size is centred with the extra pixel after the origin", odd, 0, {-16, 17, -8, 9}},
        {"at half scale the region rounds outward", odd, 1, {-8, 9, -4, 5}},
        {"wide pixels", wide, 0, {-10, 10, -15, 15}},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.what);
        PxImageMultiTileRequest::Results const results = frame(c.source.make(), c.proxyScale);
        ASSERT_FALSE(results.empty());
        for (PxImageResult const& result : results)
            EXPECT_EQ(result.getFillColor(), c.source.fill);
        IxTile const image = PxImageMultiTileRequest::assembleTiles(results);
        EXPECT_EQ(image.getPixelRegion(), c.region);
        EXPECT_EQ(image.getPixelFormat().getDepth(), c.source.depth);
        EXPECT_TRUE(filledWith(image, c.source.colour));
    }
}

TEST(ColorSourceNode, ATileBesideTheImageIsEmptyAndShowsTheFill) {
    Source source;
    source.fill = {1.0f, 0.0f, 0.0f, 0.5f};
    PxNodePtr<PxImageProtocol const> const node(source.make());
    PxImageResult result;
    PxTest::runAsRequest([&] {
        result = PxUPtr<PxImageProtocol const>(node)->getImageResult(PxImageContext(0.0, {5, 5}));
    });
    EXPECT_TRUE(result.getPixelRegion().isEmpty());
    EXPECT_EQ(result.getFillColor(), source.fill);
    EXPECT_TRUE(result.getVI().isNonEmpty());
}

TEST(ColorSourceNode, AResultHoldsWhileEveryValueItReadHolds) {
    Source source;
    source.widthVI = PxValidityInterval(0.0, 5.0);
    source.colourVI = PxValidityInterval(0.5, 10.0);
    PxImageMultiTileRequest::Results const results = frame(source.make(), 0);
    ASSERT_FALSE(results.empty());
    for (PxImageResult const& result : results) {
        EXPECT_EQ(result.getVI().getStart(), 0.5);
        EXPECT_EQ(result.getVI().getEnd(), 5.0);
    }
}

TEST(ColorSourceNode, NoSizeIsNoImage) {
    Source source;
    source.width = 0;
    EXPECT_TRUE(frame(source.make(), 0).empty());
}

TEST(EmptyImageNode, HasNoPixelAndNoChain) {
    PxStrongHndl<PxEmptyImageNode> const strong = PxTest::makeNode<PxEmptyImageNode>();
    EXPECT_FALSE(strong->isChainConnected());
    PxNodePtr<PxImageProtocol const> const node(strong);
    PxImageResult result;
    PxTest::runAsRequest([&] {
        result = PxUPtr<PxImageProtocol const>(node)->getImageResult(PxImageContext(0.0, {0, 0}));
    });
    EXPECT_TRUE(result.getPixelRegion().isEmpty());
    EXPECT_EQ(result.getFillColor(), CoRgbaColorTyped<float>::ZERO);
}
