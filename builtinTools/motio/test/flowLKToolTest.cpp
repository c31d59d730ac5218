// "Lucas-Kanade Flow" as a tool and as the node of the motion graph: its
// identity, and the flow it finds on a moving image through the real chain
// (luminance, gradient, time derivative), whatever the tile grid.
#include "btFlowLKTool.h"
#include "btPxGradientNode.h"
#include "btSingleChannelMonoPxNode.h"
#include "btTimeDerivTool.h"
#include "motioTestSupport.h"
#include "piImageInputPolicy.h"
#include "piImageModifier.h"

#include <gtest/gtest.h>

using namespace Qv;
using namespace Qv::MotioTest;

namespace {

class FlowLK : public MotioGraphTest {
protected:
    static void SetUpTestSuite() {
        MotioGraphTest::SetUpTestSuite();
        BtFlowLKTool::registerTool();
    }
};

// The flow of a luminance pattern moving by (0.3, -0.2) pixels a frame.
PxStrongHndl<PxImageProtocol> movingPatternFlow(GeRectangle<int> const& region) {
    auto const source = functionImage(region,
                                      [](int x, int y, double frame, int) {
                                          float const sx = float(x) - 0.3f * float(frame);
                                          float const sy = float(y) + 0.2f * float(frame);
                                          float const v =
                                              std::sin(0.3f * sx) + std::cos(0.25f * sy) + 0.02f * sx * sy;
                                          return Rgba{v, v, v, 1.0f};
                                      },
                                      {.perFrame = true});
    auto const mono = SingleChannelMonoPxNode::createPxNode(source);
    return BtFlowLKTool::createPxNode(
        PxGradientNode::createPxNode(mono),
        BtTimeDerivTool::createPxNode(mono, mono, BtMotioTypes::FORWARD_VECTORS));
}

} // namespace

TEST_F(FlowLK, IsAnInnerToolOfGradientAndDerivative) {
    RCShdPtr<PiTool const> tool = registeredTool("Lucas-Kanade Flow");
    ASSERT_TRUE(tool);
    EXPECT_EQ(tool->getProtocol().getCategory(), PiToolProtocol::getTestCategory());
    EXPECT_EQ(tool->getProtocol().getDescription(),
              "Computes optical flow motion vectors using Lucas-Kanade algorithm.");
    EXPECT_EQ(tool->getProtocol().getPrimaryInput(), "Image Gradient");

    RCShdPtr<PiNode> node = _graph->createNode("Lucas-Kanade Flow", "LK");
    struct Case {
        char const* name;
        bool primary;
        std::vector<int> masks;
    };
    Case const cases[] = {{"Image Gradient", true, {1, 7, 1}},
                          {"Image Time Derivative", false, {2, 7, 3, 3}}};
    ASSERT_GE(node->getInputs().size(), 2u);
    for (std::size_t i = 0; i < 2; ++i) {
        Case const& c = cases[i];
        SCOPED_TRACE(c.name);
        EXPECT_EQ(node->getInputs()[i]->getName(), c.name);
        auto const policy = rcCast<PiImageInputPolicy const>(node->getInputs()[i]->getPolicy());
        ASSERT_TRUE(policy);
        EXPECT_EQ(policy->isPrimary(), c.primary);
        EXPECT_EQ(policy->getMasks(), c.masks);
        EXPECT_EQ(policy->getResetType(), PiImageInputPolicy::RESET_NONE);
        EXPECT_FALSE(policy->getFlag());
    }
    EXPECT_EQ(node->getInterface<PiImageModifier>()->getMaskingMode(), PiImageModifier::MASKING_NONE);
}

// A flat image as its own derivative: gx = 0.5, gy = 1, t = 0.5 everywhere.
// Every window is degenerate (A C = B B = 156.25): the normal flow
// (p, q) (D + E) / (p p + q q) with p = 18.75, q = 37.5, D + E = -18.75 is
// (-0.2, -0.4) in the computed area; the band of two pixels stays zero. The
// output holds three components.
TEST_F(FlowLK, TheToolSolvesWhatItsInputsGive) {
    RCShdPtr<PiNode> flat = colorSource("Flat", 8, 8, {0.5, 1.0, 0.0});
    RCShdPtr<PiNode> node = _graph->createNode("Lucas-Kanade Flow", "LK");
    _graph->connect(flat->getOutput("Output"), node->getInput("Image Gradient"));
    _graph->connect(flat->getOutput("Output"), node->getInput("Image Time Derivative"));
    IxTile const image = render(node);
    EXPECT_EQ(image.getPixelRegion(), (GeRectangle<int>{-4, 4, -4, 4}));
    EXPECT_EQ(image.getPixelFormat().getComps(), IxPixelFormat::RGB);
    GeRectangle<int> const computed{-2, 2, -2, 2};
    for (int y = -4; y < 4; ++y)
        for (int x = -4; x < 4; ++x) {
            SCOPED_TRACE(testing::Message() << x << ", " << y);
            Rgba const p = pixelAt(image, x, y);
            bool const inside = computed.contains(x, y);
            EXPECT_NEAR(p.r, inside ? -0.2f : 0.0f, 1e-6f);
            EXPECT_NEAR(p.g, inside ? -0.4f : 0.0f, 1e-6f);
            EXPECT_EQ(p.b, 0.0f);
        }
}

TEST_F(FlowLK, AnUnfedDerivativeGivesNoMotion) {
    RCShdPtr<PiNode> flat = colorSource("Flat", 8, 8, {0.5, 0.25, 0.0});
    RCShdPtr<PiNode> node = _graph->createNode("Lucas-Kanade Flow", "LK");
    _graph->connect(flat->getOutput("Output"), node->getInput("Image Gradient"));
    IxTile const image = render(node);
    ASSERT_TRUE(image.isValid());
    for (int y = -4; y < 4; ++y)
        for (int x = -4; x < 4; ++x) {
            EXPECT_EQ(pixelAt(image, x, y).r, 0.0f);
            EXPECT_EQ(pixelAt(image, x, y).g, 0.0f);
        }
}

// Tiles of 16 and of 256 pixels give the same flow to half-float rounding,
// and it is the motion of the pattern, to the error of the linearisation.
TEST_F(FlowLK, FindsTheMotionWhateverTheTileSize) {
    GeRectangle<int> const region{-20, 28, -13, 21};
    IxTile images[2];
    int const sizes[2] = {16, 256};
    for (int i = 0; i < 2; ++i) {
        TileSize grid(sizes[i]);
        images[i] = evaluateFrame(movingPatternFlow(region), {.time = 2.0 / RATE});
    }
    ASSERT_EQ(images[0].getPixelRegion(), region);
    ASSERT_EQ(images[1].getPixelRegion(), region);
    double sumU = 0.0, sumV = 0.0;
    int count = 0;
    for (int y = region.y1; y < region.y2; ++y)
        for (int x = region.x1; x < region.x2; ++x) {
            Rgba const small = pixelAt(images[0], x, y);
            Rgba const large = pixelAt(images[1], x, y);
            ASSERT_NEAR(small.r, large.r, 2e-3f) << x << ", " << y;
            ASSERT_NEAR(small.g, large.g, 2e-3f) << x << ", " << y;
            if (x >= region.x1 + 2 && x < region.x2 - 2 && y >= region.y1 + 2 && y < region.y2 - 2) {
                sumU += large.r;
                sumV += large.g;
                ++count;
            } else {
                EXPECT_EQ(large.r, 0.0f);
                EXPECT_EQ(large.g, 0.0f);
            }
        }
    EXPECT_NEAR(sumU / count, 0.3, 0.02);
    EXPECT_NEAR(sumV / count, -0.2, 0.02);
}
