// The Perona-Malik coefficients: exp(-s) and 1 / (1 + s) of the scaled
// squared gradient and time derivative, on small images.
#include "btPMCoefsProc.h"
#include "btPMCoefsTool.h"
#include "motioTestSupport.h"

#include <cmath>

using namespace Qv;
using namespace Qv::MotioTest;

namespace {

class PMCoefficients : public MotioTestBase {};

struct CoefCase {
    float gx, gy, it;
    float g1, g2; // exp(-s), 1 / (1 + s), s = (gx^2 + gy^2 + it^2) * 25 / 6
};

// s in brackets.
CoefCase const CASES[] = {
    {0.0f, 0.0f, 0.0f, 1.0f, 1.0f},                    // 0
    {0.3f, 0.4f, 0.0f, 0.352866095f, 0.489795918f},    // 25/24
    {0.0f, 0.0f, 0.6f, 0.223130173f, 0.4f},            // 1.5
    {1.0f, 1.0f, 1.0f, 3.72665495e-6f, 0.0740740741f}, // 12.5
    {0.5f, -0.5f, 0.25f, 0.0959670946f, 0.299065429f}, // 2.34375
    {2.0f, 0.0f, 0.0f, 5.7777e-8f, 0.0566037736f},     // 50/3
    {0.0f, 10.0f, 0.0f, 0.0f, 0.00239425390f},         // 416.67
    {-0.1f, 0.2f, -0.3f, 0.558035158f, 0.631578947f},  // 0.5833
    {0.0f, -0.3f, -0.4f, 0.352866095f, 0.489795918f},  // 25/24, from the time derivative too
};
constexpr int NB_CASES = sizeof(CASES) / sizeof(CASES[0]);

// The cases laid out row by row over a 7 x 3 image: lines of 7 pixels take
// both the four-at-a-time loop and the rest.
GeRectangle<int> const REGION{-3, 4, -1, 2};
int caseAt(int x, int y) {
    return ((x - REGION.x1) + 7 * (y - REGION.y1)) % NB_CASES;
}

} // namespace

TEST_F(PMCoefficients, TheScaleIsGivenByItsBits) {
    EXPECT_EQ(std::bit_cast<std::uint32_t>(BtPMCoefsProc::kDiffusionScale), 0x40855555u);
    EXPECT_NEAR(BtPMCoefsProc::kDiffusionScale, 25.0 / 6.0, 2e-7);
}

TEST_F(PMCoefficients, AreTheExponentialAndTheRationalOfTheScaledSquares) {
    PxStrongHndl<PxNode const> const gradient = functionImage(REGION, [](int x, int y) {
        CoefCase const& c = CASES[caseAt(x, y)];
        return Rgba{c.gx, c.gy, 7.0f, 0.5f}; // blue and alpha take no part
    });
    // One component: what an ALPHA tile holds.
    PxStrongHndl<PxNode const> const derivative = functionImage(REGION,
                                                                [](int x, int y) {
                                                                    float const it = CASES[caseAt(x, y)].it;
                                                                    return Rgba{it, it, it, it};
                                                                },
                                                                {.comps = IxPixelFormat::ALPHA});
    PxStrongHndl<PxImageProtocol> const node = BtPMCoefsTool::createPxNode(gradient, derivative);

    IxPixelFormat const format = node->getImageFormat().getValue().getPixelFormat();
    EXPECT_EQ(format.getComps(), IxPixelFormat::RGB);
    EXPECT_EQ(format.getDepth(), IxPixelFormat::FLOAT32);

    IxTile const out = evaluateFrame(node);
    ASSERT_EQ(out.getPixelRegion(), REGION);
    for (int y = REGION.y1; y < REGION.y2; ++y)
        for (int x = REGION.x1; x < REGION.x2; ++x) {
            CoefCase const& c = CASES[caseAt(x, y)];
            SCOPED_TRACE(testing::Message() << "(" << x << ", " << y << ") case " << caseAt(x, y));
            EXPECT_TRUE(near(pixelAt(out, x, y), Rgba{c.g1, c.g2, 0.0f, 1.0f}));
        }
}

TEST_F(PMCoefficients, WithoutATimeDerivativeOnlyTheGradientCounts) {
    PxStrongHndl<PxNode const> const gradient = constantImage(REGION, {0.3f, 0.4f, 0, 1});
    IxTile const out = evaluateFrame(BtPMCoefsTool::createPxNode(gradient, nothing()));
    ASSERT_EQ(out.getPixelRegion(), REGION);
    EXPECT_TRUE(near(pixelAt(out, 0, 0), Rgba{0.352866095f, 0.489795918f, 0, 1}));
}

TEST_F(PMCoefficients, ABrokenInputCountsAsTheStrongestEdge) {
    Rgba const broken[] = {{NaN, 0, 0, 1}, {INF, 0, 0, 1}, {0, -INF, 0, 1}, {3e19f, 0, 0, 1}};
    for (Rgba const& g : broken) {
        SCOPED_TRACE(testing::Message() << g);
        IxTile const out = evaluateFrame(BtPMCoefsTool::createPxNode(constantImage(REGION, g), nothing()));
        Rgba const c = pixelAt(out, 0, 0);
        EXPECT_EQ(c.r, 0.0f);
        EXPECT_TRUE(std::isfinite(c.g));
        EXPECT_GE(c.g, 0.0f);
        EXPECT_LT(c.g, 1e-20f);
    }
}

TEST_F(PMCoefficients, ATimeDerivativeOverPartOfTheImageCountsAsZeroBeyond) {
    PxStrongHndl<PxNode const> const gradient = constantImage(REGION, {0, 0, 0, 1});
    PxStrongHndl<PxNode const> const derivative = functionImage({-3, 0, -1, 2},
                                                                [](int, int) {
                                                                    return Rgba{0.6f, 0.6f, 0.6f, 0.6f};
                                                                },
                                                                {.comps = IxPixelFormat::ALPHA});
    IxTile const out = evaluateFrame(BtPMCoefsTool::createPxNode(gradient, derivative));
    ASSERT_EQ(out.getPixelRegion(), REGION);
    EXPECT_TRUE(near(pixelAt(out, -1, 0), Rgba{0.223130173f, 0.4f, 0, 1}));
    EXPECT_TRUE(near(pixelAt(out, 2, 0), Rgba{1, 1, 0, 1}));
}
