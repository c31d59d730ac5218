// The inner tools of the diffusion, upscale and vector increment kernels as
// a composition sees them: identity, inputs, masking, panels, and one image
// through a graph.
#include "btPMCoefsTool.h"
#include "btPMFilterTool.h"
#include "btUpscaleTool.h"
#include "btVectorIncTool.h"
#include "motioTestSupport.h"
#include "piImageInputPolicy.h"
#include "piImageModifier.h"
#include "piUserInterface.h"

using namespace Qv;
using namespace Qv::MotioTest;

namespace {

class MotioKernelTools : public MotioGraphTest {
protected:
    static void SetUpTestSuite() {
        MotioGraphTest::SetUpTestSuite();
        // Registering again replaces: harmless once the package does it too.
        BtPMCoefsTool::registerTool();
        BtPMFilterTool::registerTool();
        BtUpscaleTool::registerTool();
        BtVectorIncTool::registerTool();
    }
};

struct InputSpec {
    char const* name;
    bool primary;
    std::vector<int> masks;
};

struct ToolSpec {
    char const* name;
    char const* description;
    std::vector<InputSpec> images;
    PiImageModifier::MaskingMode masking;
    char const* xml; // the panel file, or empty
};

} // namespace

TEST_F(MotioKernelTools, AreTestToolsWithTheirInputsAndMasking) {
    ToolSpec const tools[] = {
        {"Perona-Malik Diffusion Coefficients",
         "Computes the two Perona and Malik anisotropic diffusion coefficients.",
         {{"Image Gradient", true, {1, 7, 1}}, {"Image Time Derivative", false, {2, 7, 3, 3}}},
         PiImageModifier::MASKING_NONE,
         ""},
        {"Perona-Malik Diffusion Filtering",
         "Uses the two Perona and Malik diffusion coefficients to perform anisotropic diffusion filtering.",
         {{"Vectors", true, {1, 7, 1}}, {"Coefficients", false, {1, 7, 3, 3}}},
         PiImageModifier::MASKING_NONE,
         "<ToolUiDir>/pmFilter.xml"},
        {"Upscale Proxy",
         "Upscales next proxy level of input by power of two, without changing region of definition.",
         {{"Input", true, {3, 7, 1}}},
         PiImageModifier::MASKING_BY_TOOL,
         "<ToolUiDir>/upscale.xml"},
        {"Vector Increment",
         "Computes vector addition of primary vector image input and incremental vector image input.",
         {{"Vectors", true, {1, 7, 1}}, {"Vector Increments", false, {1, 7, 3, 3}}},
         PiImageModifier::MASKING_BY_FRAME,
         ""},
    };
    for (ToolSpec const& spec : tools) {
        SCOPED_TRACE(spec.name);
        RCShdPtr<PiTool const> const tool = registeredTool(spec.name);
        ASSERT_TRUE(tool);
        PiToolProtocol const& protocol = tool->getProtocol();
        EXPECT_EQ(protocol.getCategory(), PiToolProtocol::getTestCategory());
        EXPECT_EQ(protocol.getDescription(), spec.description);
        EXPECT_EQ(protocol.getSchemaNb(), 1);

        RCShdPtr<PiNode> const node = _graph->createNode(spec.name, "N");
        auto* modifier = node->getInterface<PiImageModifier>();
        ASSERT_NE(modifier, nullptr);
        EXPECT_EQ(modifier->getMaskingMode(), spec.masking);
        EXPECT_EQ(modifier->getXmlFileName(), spec.xml);
        EXPECT_EQ(node->getInput("Mask"), nullptr);
        for (InputSpec const& input : spec.images) {
            SCOPED_TRACE(input.name);
            RCShdPtr<PiInput> const socket = node->getInput(input.name);
            ASSERT_TRUE(socket);
            auto const policy = rcCast<PiImageInputPolicy const>(socket->getPolicy());
            ASSERT_TRUE(policy);
            EXPECT_EQ(policy->isPrimary(), input.primary);
            EXPECT_EQ(policy->getMasks(), input.masks);
            if (input.primary) {
                EXPECT_EQ(modifier->getPrimaryInput(), socket);
            }
        }
        _graph->removeNode(node);
    }
}

TEST_F(MotioKernelTools, IterationsAndScaleKeepToTheirRanges) {
    struct Case {
        char const* tool;
        char const* input;
        PiVariant min, max, byDefault, above;
    } const cases[] = {
        {"Perona-Malik Diffusion Filtering", "Iterations", 1, 5, 3, 6},
        {"Upscale Proxy", "Scale", 0.0, 10.0, 1.0, 10.5},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.input);
        RCShdPtr<PiNode> const node = _graph->createNode(c.tool, "R");
        RCShdPtr<PiInputPolicy const> const policy = node->getInput(c.input)->getPolicy();
        EXPECT_EQ(policy->getMin(), c.min);
        EXPECT_EQ(policy->getMax(), c.max);
        EXPECT_EQ(policy->getDefault(), c.byDefault);
        EXPECT_TRUE(policy->canSetValue(c.max));
        EXPECT_FALSE(policy->canSetValue(c.above));
        // The panel file names the input.
        std::string const panel = node->getInterface<PiUserInterface>()->getXmlDescription();
        EXPECT_NE(panel.find(std::string("input=\"") + c.input + "\""), std::string::npos) << panel;
        _graph->removeNode(node);
    }
}

TEST_F(MotioKernelTools, UpscaleProxyDoublesAColorSourceWithAScaleOfTwo) {
    RCShdPtr<PiNode> const source = colorSource("C", 8, 6, {0.25, 0.5, 0.125});
    RCShdPtr<PiNode> const up = _graph->createNode("Upscale Proxy", "U");
    _graph->connect(source->getOutput("Output"), up->getInput("Input"));
    up->getInput("Scale")->setConstantValue(2.0);

    IxTile const out = render(up);
    ASSERT_EQ(out.getPixelRegion(), (GeRectangle<int>{-4, 4, -3, 3}));
    EXPECT_TRUE(near(pixelAt(out, 0, 0), Rgba{0.5f, 1.0f, 0.25f, 2.0f}));
    EXPECT_TRUE(near(pixelAt(out, -3, 1), Rgba{0.5f, 1.0f, 0.25f, 2.0f}));
}

TEST_F(MotioKernelTools, AFilterWithoutCoefficientsShowsItsVectors) {
    RCShdPtr<PiNode> const source = colorSource("C", 4, 4, {1.5, -0.5, 0.0});
    RCShdPtr<PiNode> const filter = _graph->createNode("Perona-Malik Diffusion Filtering", "F");
    _graph->connect(source->getOutput("Output"), filter->getInput("Vectors"));
    IxTile const out = render(filter);
    ASSERT_EQ(out.getPixelRegion(), (GeRectangle<int>{-2, 2, -2, 2}));
    EXPECT_TRUE(near(pixelAt(out, 1, -1), Rgba{1.5f, -0.5f, 0.0f, 1.0f}));
}
