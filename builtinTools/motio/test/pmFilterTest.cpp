// Perona-Malik diffusion filtering: one stage of the pipe on hand-computed
// stencils, then the filter node with its iteration count, its missing
// input and its tiles.
#include "btPMCoefsTool.h"
#include "btPMFilterProc.h"
#include "btPMFilterTool.h"
#include "motioTestSupport.h"

#include <cmath>
#include <vector>

using namespace Qv;
using namespace Qv::MotioTest;

namespace {

class PMFiltering : public MotioTestBase {};

// One stage over the whole of `region`, with coefficient component `comp`.
IxTile oneStage(GeRectangle<int> const& region, PixelFn const& field, PixelFn const& coefficients, int comp) {
    IxTile const vectors = makeTile(RGBA32, region, field);
    IxTile const coefs = makeTile(RGBA32, region, coefficients);
    IpScanlinePipePtr const g(
        new IpPMExtractGNode(IpScanlinePipePtr(new IpSourceNode({IxReadGuard(coefs)})), comp));
    IpScanlinePipePtr const stage(
        new IpPMFilterNode(IpScanlinePipePtr(new IpSourceNode({IxReadGuard(vectors)})), g));
    IxTile const out(RGBA32, region);
    IpDestNode(stage).process(IxWriteGuard(out));
    return out;
}

Rgba impulseAt(int x, int y, int px, int py) {
    return x == px && y == py ? Rgba{1, 0, 0, 0} : Rgba{0, 0, 0, 0};
}

struct Expected {
    int x, y;
    float red;
};

struct StageCase {
    char const* what;
    PixelFn field;
    PixelFn coefficients;
    int comp;
    std::vector<Expected> expected;
};

} // namespace

TEST_F(PMFiltering, OneStageOnHandComputedStencils) {
    GeRectangle<int> const region{0, 5, 0, 5};
    PixelFn const ones = [](int, int) { return Rgba{1, 1, 0, 1}; };
    StageCase const cases[] = {
        {"every coefficient 1: the mean of the five-point stencil",
         [](int x, int y) {
             return Rgba{float(x * x + 3 * y), 0, 0, 0};
         },
         ones,
         0,
         {{2, 2, 10.4f}, {3, 1, 12.4f}}},
        {"a pixel whose coefficient is 0 gives nothing to its neighbours, and loses to them",
         [](int x, int y) { return impulseAt(x, y, 2, 2); },
         [](int x, int y) {
             return x == 2 && y == 2 ? Rgba{0, 1, 0, 1} : Rgba{1, 1, 0, 1};
         },
         0,
         {{2, 2, 0.2f}, {1, 2, 0.0f}, {3, 2, 0.0f}, {2, 1, 0.0f}, {2, 3, 0.0f}}},
        {"the second component is the other coefficient",
         [](int x, int y) { return impulseAt(x, y, 2, 2); },
         [](int, int) {
             return Rgba{1, 0.5f, 0, 1};
         },
         1,
         {{2, 2, 0.6f}, {2, 1, 0.1f}, {3, 2, 0.1f}, {1, 1, 0.0f}, {0, 2, 0.0f}}},
        {"nothing flows in from outside the image",
         [](int, int) {
             return Rgba{1, 1, 1, 1};
         },
         ones,
         0,
         {{0, 0, 1.0f}, {4, 4, 1.0f}, {2, 0, 1.0f}, {2, 2, 1.0f}}},
    };
    for (StageCase const& c : cases) {
        SCOPED_TRACE(c.what);
        IxTile const out = oneStage(region, c.field, c.coefficients, c.comp);
        for (Expected const& e : c.expected)
            EXPECT_NEAR(pixelAt(out, e.x, e.y).r, e.red, 1e-6f) << "(" << e.x << ", " << e.y << ")";
    }
}

TEST_F(PMFiltering, AnIterationAtFullSizeIsTwoStagesOfMeansWhereTheImageIsFlat) {
    GeRectangle<int> const region{-4, 5, -4, 5};
    PxStrongHndl<PxNode const> const vectors = functionImage(region, [](int x, int y) {
        return x == 0 && y == 0 ? Rgba{1, -2, 0, 1} : Rgba{0, 0, 0, 1};
    });
    PxStrongHndl<PxNode const> const coefficients = constantImage(region, {1, 1, 0, 1});
    IxTile const out = evaluateFrame(BtPMFilterTool::createPxNode(vectors, coefficients, 3));
    ASSERT_EQ(out.getPixelRegion(), region);
    // The impulse after two means: 0.2 stays, each of the 12 pixels within
    // two steps takes its share, and the sum stays 1.
    auto expected = [](int x, int y) {
        int const d = std::abs(x) + std::abs(y);
        if (d == 0)
            return 0.2f;
        if (d == 1 || (d == 2 && x != 0 && y != 0))
            return 0.08f;
        return d == 2 ? 0.04f : 0.0f;
    };
    for (int y = region.y1; y < region.y2; ++y)
        for (int x = region.x1; x < region.x2; ++x) {
            SCOPED_TRACE(testing::Message() << "(" << x << ", " << y << ")");
            // The flat alpha stays 1 up to the border: nothing comes in from outside.
            EXPECT_TRUE(near(pixelAt(out, x, y), Rgba{expected(x, y), -2 * expected(x, y), 0, 1}));
        }
}

TEST_F(PMFiltering, AStronglyTexturedImageLeavesTheVectors) {
    GeRectangle<int> const region{-6, 7, -5, 6};
    PixelFn const field = [](int x, int y) { return Rgba{0.1f * x, std::sin(0.7f * y), 0, 1}; };
    PxStrongHndl<PxNode const> const vectors = functionImage(region, field);
    PxStrongHndl<PxNode const> const gradient = constantImage(region, {100, 0, 0, 1});
    PxStrongHndl<PxImageProtocol> const coefficients =
        BtPMCoefsTool::createPxNode(gradient, constantImage(region, {0, 0, 0, 1}));
    for (int proxy : {0, 1}) {
        SCOPED_TRACE(testing::Message() << "proxy " << proxy);
        IxTile const out =
            evaluateFrame(BtPMFilterTool::createPxNode(vectors, coefficients, 3), {.proxy = proxy});
        IxTile const in = evaluateFrame(PxStrongHndl<PxImageProtocol const>(vectors), {.proxy = proxy});
        ASSERT_EQ(out.getPixelRegion(), in.getPixelRegion());
        GeRectangle<int> const& r = out.getPixelRegion();
        for (int y = r.y1; y < r.y2; ++y)
            for (int x = r.x1; x < r.x2; ++x)
                EXPECT_TRUE(near(pixelAt(out, x, y), pixelAt(in, x, y), 1e-4f)) << x << ", " << y;
    }
}

TEST_F(PMFiltering, IterationsGrowWithTheProxyLevelUpToTheInput) {
    struct Case {
        int proxy, iterations, expected;
    } const cases[] = {{0, 3, 1}, {1, 3, 2}, {2, 3, 3}, {6, 3, 3}, {1, 5, 2},
                       {4, 5, 5}, {9, 5, 5}, {3, 1, 1}, {0, 0, 0}, {2, 1000, 3}};
    for (Case const& c : cases)
        EXPECT_EQ(BtPMFilterTool::getIterationCount(c.proxy, c.iterations), c.expected)
            << "proxy " << c.proxy << ", " << c.iterations << " iterations";
}

TEST_F(PMFiltering, FiveIterationsAtProxyOneRunTwo) {
    GeRectangle<int> const region{-12, 12, -10, 10};
    PxStrongHndl<PxNode const> const vectors = functionImage(region, [](int x, int y) {
        return Rgba{x == 0 && y == 0 ? 1.0f : 0.0f, 0.05f * x * y, 0, 1};
    });
    PxStrongHndl<PxNode const> const coefficients = constantImage(region, {1, 0.5f, 0, 1});
    auto filtered = [&](int iterations) {
        return evaluateFrame(BtPMFilterTool::createPxNode(vectors, coefficients, constantValue(iterations)),
                             {.proxy = 1});
    };
    IxTile const five = filtered(5);
    EXPECT_EQ(firstDifference(five, filtered(2), 0.0f), "");
    EXPECT_NE(firstDifference(five, filtered(1), 0.0f), "");
}

TEST_F(PMFiltering, WithoutCoefficientsTheVectorsPassUnchanged) {
    GeRectangle<int> const region{-3, 4, -2, 2};
    PxStrongHndl<PxNode const> const vectors = functionImage(region, [](int x, int y) {
        return Rgba{float(x), float(y), 0.5f, 0.25f};
    });
    IxTile const out = evaluateFrame(BtPMFilterTool::createPxNode(vectors, nothing(), 3));
    EXPECT_EQ(firstDifference(out, evaluateFrame(PxStrongHndl<PxImageProtocol const>(vectors)), 0.0f), "");
}

TEST_F(PMFiltering, TileSizesGiveTheSamePixels) {
    // Regions that start and end off the 16-pixel grid, at every level.
    GeRectangle<int> const region{-37, 35, -21, 30};
    PxStrongHndl<PxNode const> const vectors = functionImage(region, [](int x, int y, double, int p) {
        return Rgba{std::sin(0.37f * x) + 0.1f * y, std::cos(0.21f * y) - 0.05f * x, 0.01f * x * y, float(p)};
    });
    PxStrongHndl<PxNode const> const gradient = functionImage(region, [](int x, int y) {
        return Rgba{0.3f * std::sin(0.5f * x), 0.2f * std::cos(0.3f * y), 0, 1};
    });
    PxStrongHndl<PxNode const> const derivative = functionImage(region,
                                                                [](int x, int y) {
                                                                    float const it = 0.1f * ((x + y) % 3);
                                                                    return Rgba{it, it, it, it};
                                                                },
                                                                {.comps = IxPixelFormat::ALPHA});
    for (int proxy : {0, 1, 2}) {
        SCOPED_TRACE(testing::Message() << "proxy " << proxy);
        auto render = [&](int tileSize) {
            TileSize const grid(tileSize);
            return evaluateFrame(
                BtPMFilterTool::createPxNode(vectors, BtPMCoefsTool::createPxNode(gradient, derivative), 3),
                {.proxy = proxy});
        };
        EXPECT_EQ(firstDifference(render(16), render(256), 0.0f), "");
    }
}

TEST_F(PMFiltering, CoefficientsOverPartOfTheVectorsHoldTheRestStill) {
    // Coefficients only over x < 0: beyond, every coefficient reads 0, so
    // pixels from x = 2 on (two stages away) keep their vectors.
    GeRectangle<int> const region{-6, 6, -4, 4};
    PxStrongHndl<PxNode const> const vectors = functionImage(region, [](int x, int y) {
        return Rgba{float(x * x), float(y), 0, 1};
    });
    PxStrongHndl<PxNode const> const coefficients = constantImage({-6, 0, -4, 4}, {1, 1, 0, 1});
    IxTile out;
    ASSERT_NO_THROW(out = evaluateFrame(BtPMFilterTool::createPxNode(vectors, coefficients, 3)));
    ASSERT_EQ(out.getPixelRegion(), region);
    for (int y = region.y1; y < region.y2; ++y)
        for (int x = 2; x < region.x2; ++x)
            EXPECT_TRUE(near(pixelAt(out, x, y), Rgba{float(x * x), float(y), 0, 1})) << x << ", " << y;
    EXPECT_FALSE(near(pixelAt(out, -3, 0), Rgba{9, 0, 0, 1}));
}
