// "Time Derivative" and its node: the next (or previous) frame minus the
// second image, over the union of their regions.
#include "btMotioTypes.h"
#include "btTimeDerivTool.h"
#include "motioTestSupport.h"
#include "piFootageInterface.h"
#include "piImageInputPolicy.h"
#include "piImageModifier.h"

#include <gtest/gtest.h>

using namespace Qv;
using namespace Qv::MotioTest;

namespace {

class TimeDerivative : public MotioGraphTest {
protected:
    static void SetUpTestSuite() {
        MotioGraphTest::SetUpTestSuite();
        BtTimeDerivTool::registerTool();
    }

    // A 6x4 Color Source whose red is keyed to 0.1, 0.3 and 0.7 on frames 0,
    // 1 and 2 and whose green stays 0.5.
    RCShdPtr<PiNode> makeKeyedSource() {
        RCShdPtr<PiNode> node = colorSource("Keyed", 6, 4, {0.0, 0.5, 0.0});
        _frame =
            1.0 / node->getInterface<PiFootageInterface>()->getRate(node->getOutput("Output")).getDouble();
        RCShdPtr<PiInput> red = node->getInput("Color")->getChannel("Red");
        double const keys[] = {0.1, 0.3, 0.7};
        for (int k = 0; k < 3; ++k)
            red->getValueInterface().setKeyframeVariant(k * _frame, PiVariant(keys[k]));
        return node;
    }

    double _frame = 0.0; // seconds per frame of the source
};

} // namespace

TEST_F(TimeDerivative, IsAnInnerToolOfOneImageInput) {
    RCShdPtr<PiTool const> tool = registeredTool("Time Derivative");
    ASSERT_TRUE(tool);
    EXPECT_EQ(tool->getProtocol().getCategory(), PiToolProtocol::getTestCategory());
    EXPECT_EQ(tool->getProtocol().getDescription(),
              "Computes difference between next frame and current frame.");
    EXPECT_EQ(tool->getProtocol().getSchemaNb(), 1);
    EXPECT_EQ(tool->getProtocol().getPrimaryInput(), PiImageModifier::getSingleInputName());

    RCShdPtr<PiNode> node = _graph->createNode("Time Derivative", "D");
    auto const policy = rcCast<PiImageInputPolicy const>(node->getInput("Input")->getPolicy());
    ASSERT_TRUE(policy);
    EXPECT_TRUE(policy->isPrimary());
    EXPECT_EQ(policy->getMasks(), (std::vector<int>{3, 7, 1}));
    EXPECT_EQ(policy->getResetType(), PiImageInputPolicy::RESET_NONE);
    EXPECT_FALSE(policy->getFlag());
    EXPECT_EQ(node->getInterface<PiImageModifier>()->getMaskingMode(), PiImageModifier::MASKING_NONE);
    EXPECT_EQ(node->getInput(PiImageModifier::getMaskInputName()), nullptr);
}

// The tool gives frame t + 1 minus frame t, per component.
TEST_F(TimeDerivative, TheToolGivesTheNextFrameMinusThisOne) {
    RCShdPtr<PiNode> source = makeKeyedSource();
    RCShdPtr<PiNode> node = _graph->createNode("Time Derivative", "D");
    _graph->connect(source->getOutput("Output"), node->getInput("Input"));
    struct Case {
        double frame;
        float red;
    };
    Case const cases[] = {{0, 0.2f}, {1, 0.4f}, {2, 0.0f}, {0.5, 0.3f}};
    for (Case const& c : cases) {
        SCOPED_TRACE(c.frame);
        IxTile const image = render(node, c.frame * _frame);
        EXPECT_EQ(image.getPixelRegion(), (GeRectangle<int>{-3, 3, -2, 2}));
        Rgba const p = pixelAt(image, 2, 1);
        EXPECT_NEAR(p.r, c.red, 1e-6f);
        EXPECT_EQ(p.g, 0.0f);
        EXPECT_EQ(p.a, 0.0f);
    }
}

// The node of the motion graph: the target frame (next for forward vectors,
// previous for backward ones) minus the second image.
TEST_F(TimeDerivative, TheNodeLooksTowardsTheTargetFrame) {
    RCShdPtr<PiNode> source = makeKeyedSource();
    PxStrongHndl<PxNode const> const image = source->getOutput("Output", true)->getProcNode();
    struct Case {
        BtMotioTypes::VectorType type;
        double frame;
        float red;
    };
    Case const cases[] = {
        {BtMotioTypes::FORWARD_VECTORS, 1, 0.4f},  {BtMotioTypes::BACKWARD_VECTORS, 1, -0.2f},
        {BtMotioTypes::FORWARD_VECTORS, 0, 0.2f},  {BtMotioTypes::BACKWARD_VECTORS, 2, -0.4f},
        {BtMotioTypes::BACKWARD_VECTORS, 0, 0.0f}, // before the first key the first key holds
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(testing::Message() << c.type << " at " << c.frame);
        PxValidityInterval interval;
        double const t = c.frame * _frame;
        IxTile const out =
            evaluateFrame(BtTimeDerivTool::createPxNode(image, image, c.type), {.time = t}, &interval);
        EXPECT_NEAR(pixelAt(out, 0, 0).r, c.red, 1e-6f);
        EXPECT_TRUE(interval.contains(t));
    }
}

// A second image of another size: the difference covers both, and where one
// has no pixel its fill stands in; the result holds while both inputs do.
TEST_F(TimeDerivative, CoversTheUnionOfBothImagesForTheirCommonInterval) {
    GeRectangle<int> const wide{-4, 4, 0, 2};
    GeRectangle<int> const tall{-1, 1, -3, 3};
    auto const moving = functionImage(wide,
                                      [](int x, int, double frame, int) {
                                          return Rgba{float(x) + float(frame), 1.0f, 0.0f, 1.0f};
                                      },
                                      {.perFrame = true});
    auto const still = functionImage(tall,
                                     [](int, int y) {
                                         return Rgba{0.5f, float(y), 0.0f, 1.0f};
                                     },
                                     {.perFrame = true});
    PxValidityInterval interval;
    double const t = 3.0 / RATE;
    IxTile const out = evaluateFrame(
        BtTimeDerivTool::createPxNode(moving, still, BtMotioTypes::FORWARD_VECTORS), {.time = t}, &interval);
    EXPECT_EQ(out.getPixelRegion(), (GeRectangle<int>{-4, 4, -3, 3}));
    struct Case {
        int x, y;
        Rgba expected;
    };
    Case const cases[] = {
        {0, 1, {0.0f + 4.0f - 0.5f, 0.0f, 0.0f, 0.0f}}, // both: frame 4 of the moving one minus the still one
        {-4, 0, {-4.0f + 4.0f, 1.0f, 0.0f, 1.0f}},      // the moving one alone
        {0, -3, {-0.5f, 3.0f, 0.0f, -1.0f}},            // the still one alone, subtracted from nothing
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(testing::Message() << c.x << ", " << c.y);
        EXPECT_EQ(pixelAt(out, c.x, c.y), c.expected);
    }
    // Frame 3 of the still image and frame 4 of the moving one, seen at frame 3.
    PxValidityInterval const frame = PxValidityInterval::createFrameInterval(RATE, t);
    EXPECT_NEAR(interval.getStart(), frame.getStart(), 1e-12);
    EXPECT_NEAR(interval.getEnd(), frame.getEnd(), 1e-12);
}
