// The "Forward Warp" and "Backward Warp" tools as a composition sees them:
// their identity, their inputs, who masks, and their image through a graph.
#include "btBwdWarpTool.h"
#include "btFwdWarpTool.h"
#include "motioTestSupport.h"
#include "piImageInputPolicy.h"
#include "piImageModifier.h"
#include "piOstrandToolProtocol.h"

#include <gtest/gtest.h>
#include <vector>

using namespace Qv;
using namespace Qv::MotioTest;

namespace {

class WarpTools : public MotioGraphTest {
protected:
    static void SetUpTestSuite() {
        MotioGraphTest::SetUpTestSuite();
        // Registering again only replaces the entry, should the package
        // have registered them already.
        BtFwdWarpTool::registerTool();
        BtBwdWarpTool::registerTool();
    }

    // An opaque Color Source of 8 by 6 pixels, [-4, 4) by [-3, 3).
    RCShdPtr<PiNode> colour(std::string const& name, std::vector<double> const& rgb) {
        RCShdPtr<PiNode> node = colorSource(name, 8, 6, rgb);
        node->getInput("Alpha")->setConstantValue(1.0);
        return node;
    }
};

} // namespace

TEST_F(WarpTools, AreInnerToolsOfTheirOwn) {
    struct Case {
        std::string name;
        std::string description;
        std::vector<int> vectorMasks;
        PiImageModifier::MaskingMode masking;
        bool hasMaskInput;
    };
    Case const cases[] = {
        {"Forward Warp",
         "Forward warps input image using motion vectors. Warping is done in pixelized coordinates, without "
         "regard to pixel aspect ratio or proxy scale of either input.",
         {3, 7, 3, 3},
         PiImageModifier::MASKING_BY_TOOL,
         false},
        {"Backward Warp",
         "Backward warps image based on vectors",
         {1, 7, 3, 3},
         PiImageModifier::MASKING_BY_FRAME,
         true},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.name);
        RCShdPtr<PiTool const> const tool = registeredTool(c.name);
        ASSERT_TRUE(tool);
        PiToolProtocol const& protocol = tool->getProtocol();
        EXPECT_EQ(protocol.getCategory(), PiToolProtocol::getTestCategory());
        EXPECT_EQ(protocol.getDescription(), c.description);
        EXPECT_EQ(protocol.getSchemaNb(), 1);
        EXPECT_EQ(protocol.getManufacturer(), PiOstrandToolProtocol::getOstrandManufacturer());
        EXPECT_EQ(protocol.getVersion(), PiOstrandToolProtocol::getOstrandVersionString());
        EXPECT_EQ(protocol.getPrimaryInput(), PiImageModifier::getSingleInputName());

        RCShdPtr<PiNode> const node = _graph->createNode(c.name, "W");
        auto const input = rcCast<PiImageInputPolicy const>(
            node->getInput(PiImageModifier::getSingleInputName())->getPolicy());
        ASSERT_TRUE(input);
        EXPECT_TRUE(input->isPrimary());
        EXPECT_EQ(input->getMasks(), (std::vector<int>{3, 7, 1}));
        EXPECT_EQ(input->getResetType(), PiImageInputPolicy::RESET_NONE);
        EXPECT_FALSE(input->getFlag());
        auto const vectors = rcCast<PiImageInputPolicy const>(node->getInput("Vectors")->getPolicy());
        ASSERT_TRUE(vectors);
        EXPECT_FALSE(vectors->isPrimary());
        EXPECT_EQ(vectors->getMasks(), c.vectorMasks);
        EXPECT_EQ(vectors->getResetType(), PiImageInputPolicy::RESET_NONE);
        EXPECT_FALSE(vectors->getFlag());

        auto* modifier = node->getInterface<PiImageModifier>();
        ASSERT_NE(modifier, nullptr);
        EXPECT_EQ(modifier->getMaskingMode(), c.masking);
        EXPECT_EQ(node->getInput(PiImageModifier::getMaskInputName()) != nullptr, c.hasMaskInput);
        _graph->removeNode(node);
    }
}

// Unfed vectors hand the image on; vectors of one pixel to the right move
// it one pixel right (forward) or read it from one pixel right (backward).
TEST_F(WarpTools, WarpTheirInputThroughAGraph) {
    RCShdPtr<PiNode> const source = colour("Source", {0.2, 0.4, 0.6});
    RCShdPtr<PiNode> const shift = colour("Shift", {1.0, 0.0, 0.0});
    RCShdPtr<PiNode> const forward = _graph->createNode("Forward Warp", "F");
    RCShdPtr<PiNode> const backward = _graph->createNode("Backward Warp", "B");
    for (RCShdPtr<PiNode> const& warp : {forward, backward})
        _graph->connect(source->getOutput("Output"), warp->getInput(PiImageModifier::getSingleInputName()));

    IxTile const image = render(source);
    Rgba const inside = pixelAt(image, 0, 0);
    for (RCShdPtr<PiNode> const& warp : {forward, backward}) {
        IxTile const out = render(warp);
        EXPECT_EQ(out.getPixelRegion(), image.getPixelRegion());
        for (int x = -4; x < 4; ++x)
            EXPECT_TRUE(near(pixelAt(out, x, -3), pixelAt(image, x, -3))) << x;
    }

    for (RCShdPtr<PiNode> const& warp : {forward, backward})
        _graph->connect(shift->getOutput("Output"), warp->getInput("Vectors"));
    IxTile const moved = render(forward);
    EXPECT_EQ(moved.getPixelRegion(), image.getPixelRegion());
    EXPECT_TRUE(near(pixelAt(moved, -4, 0), Rgba::ZERO)) << "a hole where nothing lands";
    EXPECT_TRUE(near(pixelAt(moved, 3, 2), inside));
    IxTile const read = render(backward);
    EXPECT_TRUE(near(pixelAt(read, -4, 0), inside));
    EXPECT_TRUE(near(pixelAt(read, 2, 2), inside));
}
