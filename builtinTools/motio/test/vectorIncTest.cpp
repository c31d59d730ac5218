// The vector increment: the increment is read where the vector points and
// added to it, on ramps where composition and a plain sum differ.
#include "btVectorIncTool.h"
#include "motioTestSupport.h"

#include <cmath>

using namespace Qv;
using namespace Qv::MotioTest;

namespace {

class VectorIncrement : public MotioTestBase {};

GeRectangle<int> const REGION{-6, 7, -5, 5};
// What the increments show outside their pixels.
Rgba const INCREMENT_FILL{0.5f, 0.25f, 0, 0};

// I(x, y) = (0.1 x, -0.2 y): linear, so that bilinear reads are exact.
PxStrongHndl<PxNode const> rampIncrements() {
    return functionImage(REGION,
                         [](int x, int y) {
                             return Rgba{0.1f * x, -0.2f * y, 5, 5};
                         },
                         {.fill = INCREMENT_FILL});
}

} // namespace

TEST_F(VectorIncrement, ComposesTheIncrementReadWhereTheVectorPoints) {
    struct Case {
        float vx, vy;
    } const cases[] = {{1, 0}, {0.5f, -1}, {-2, 0.25f}, {0, 0}};
    for (Case const& c : cases) {
        SCOPED_TRACE(testing::Message() << "V = (" << c.vx << ", " << c.vy << ")");
        PxStrongHndl<PxNode const> const vectors = constantImage(REGION, {c.vx, c.vy, 0, 1});
        IxTile const out = evaluateFrame(BtVectorIncTool::createPxNode(vectors, rampIncrements()));
        ASSERT_EQ(out.getPixelRegion(), REGION);
        int checked = 0;
        for (int y = REGION.y1; y < REGION.y2; ++y)
            for (int x = REGION.x1; x < REGION.x2; ++x) {
                float const px = x + c.vx;
                float const py = y + c.vy;
                if (px < REGION.x1 || px > REGION.x2 - 1 || py < REGION.y1 || py > REGION.y2 - 1)
                    continue; // reads the increments' border
                // A plain sum would give (vx + 0.1 x, vy - 0.2 y).
                EXPECT_TRUE(near(pixelAt(out, x, y), Rgba{c.vx + 0.1f * px, c.vy - 0.2f * py, 0, 1}, 2e-6f))
                    << x << ", " << y;
                ++checked;
            }
        EXPECT_GT(checked, 60);
    }
}

TEST_F(VectorIncrement, VectorsPointingOutReadTheIncrementsFill) {
    struct Case {
        char const* what;
        float vx, vy;
        int x, y;
        Rgba expected;
    } const cases[] = {
        {"far outside", 100, 0, 0, 0, {100.5f, 0.25f, 0, 1}},
        {"far above", 0, -1e9f, 3, 2, {0.5f, -1e9f + 0.25f, 0, 1}},
        // Half a pixel past the last column: half the last increment, half the fill.
        {"half past the edge",
         0.5f,
         0,
         6,
         0,
         {0.5f + 0.5f * 0.6f + 0.5f * 0.5f, 0.5f * 0.0f + 0.5f * 0.25f, 0, 1}},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.what);
        IxTile const out = evaluateFrame(
            BtVectorIncTool::createPxNode(constantImage(REGION, {c.vx, c.vy, 0, 1}), rampIncrements()));
        EXPECT_TRUE(near(pixelAt(out, c.x, c.y), c.expected));
    }
}

TEST_F(VectorIncrement, ZeroIncrementsReturnTheVectorsWithAlphaOne) {
    PxStrongHndl<PxNode const> const vectors = functionImage(REGION, [](int x, int y) {
        return Rgba{0.5f * x, -0.25f * y, 7, 0.3f};
    });
    IxTile const out =
        evaluateFrame(BtVectorIncTool::createPxNode(vectors, constantImage(REGION, Rgba::ZERO)));
    ASSERT_EQ(out.getPixelRegion(), REGION);
    for (int y = REGION.y1; y < REGION.y2; ++y)
        for (int x = REGION.x1; x < REGION.x2; ++x)
            EXPECT_TRUE(near(pixelAt(out, x, y), Rgba{0.5f * x, -0.25f * y, 0, 1})) << x << ", " << y;
}

TEST_F(VectorIncrement, MissingIncrementsPassTheVectors) {
    PxStrongHndl<PxNode const> const vectors = functionImage(REGION, [](int x, int y) {
        return Rgba{0.5f * x, -0.25f * y, 7, 0.3f};
    });
    IxTile const out = evaluateFrame(BtVectorIncTool::createPxNode(vectors, nothing()));
    EXPECT_EQ(firstDifference(out, evaluateFrame(PxStrongHndl<PxImageProtocol const>(vectors)), 0.0f), "");
}

TEST_F(VectorIncrement, BrokenVectorsSpoilOnlyTheirOwnPixels) {
    PxStrongHndl<PxNode const> const vectors = functionImage(REGION, [&](int x, int y) {
        if (x == 0 && y == 0)
            return Rgba{NaN, NaN, 0, 1};
        if (x == 1 && y == 0)
            return Rgba{INF, -INF, 0, 1};
        return Rgba{0, 0, 0, 1};
    });
    IxTile out;
    ASSERT_NO_THROW(out = evaluateFrame(BtVectorIncTool::createPxNode(vectors, rampIncrements())));
    EXPECT_TRUE(std::isnan(pixelAt(out, 0, 0).r));
    EXPECT_TRUE(near(pixelAt(out, 2, 0), Rgba{0.2f, 0, 0, 1}));
    EXPECT_TRUE(near(pixelAt(out, -1, 0), Rgba{-0.1f, 0, 0, 1}));
}

TEST_F(VectorIncrement, TileSizesGiveTheSamePixels) {
    GeRectangle<int> const region{-37, 35, -21, 30};
    PxStrongHndl<PxNode const> const vectors = functionImage(region, [](int x, int y) {
        return Rgba{3.0f * std::sin(0.37f * x + 0.1f * y), 2.5f * std::cos(0.21f * y - 0.05f * x), 0, 1};
    });
    PxStrongHndl<PxNode const> const increments = functionImage(region, [](int x, int y) {
        return Rgba{0.01f * x * y, 0.02f * (x - y), 0, 1};
    });
    for (int proxy : {0, 1}) {
        SCOPED_TRACE(testing::Message() << "proxy " << proxy);
        auto render = [&](int tileSize) {
            TileSize const grid(tileSize);
            return evaluateFrame(BtVectorIncTool::createPxNode(vectors, increments), {.proxy = proxy});
        };
        EXPECT_EQ(firstDifference(render(16), render(256), 0.0f), "");
    }
}

TEST_F(VectorIncrement, IncrementsSmallerThanTheVectorsReadTheirFillBeyond) {
    PxStrongHndl<PxNode const> const increments = functionImage({-2, 3, -2, 2},
                                                                [](int x, int y) {
                                                                    return Rgba{0.1f * x, -0.2f * y, 0, 1};
                                                                },
                                                                {.fill = INCREMENT_FILL});
    IxTile const out =
        evaluateFrame(BtVectorIncTool::createPxNode(constantImage(REGION, {0, 0, 0, 1}), increments));
    ASSERT_EQ(out.getPixelRegion(), REGION);
    EXPECT_TRUE(near(pixelAt(out, 1, -1), Rgba{0.1f, 0.2f, 0, 1}));
    EXPECT_TRUE(near(pixelAt(out, 5, 4), Rgba{0.5f, 0.25f, 0, 1}));
    EXPECT_TRUE(near(pixelAt(out, -6, -5), Rgba{0.5f, 0.25f, 0, 1}));
}
