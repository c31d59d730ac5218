#include "btColorSourceTool.h"

#include "piColorProcNode.h"
#include "piImageGenerator.h"
#include "piImageGeneratorProtocol.h"
#include "piNode.h"
#include "piOstrandToolProtocol.h"
#include "piRangeInputPolicy.h"
#include "piToolRegistry.h"
#include "pxColorSourceNode.h"

#include <limits>

namespace Qv {

namespace {

std::string const TOOL_NAME("Color Source");
std::string const COLOR_NAME("Color");
std::string const ALPHA_NAME("Alpha");
std::string const XML_FILE_NAME("<ToolUiDir>/colorSource.xml");

// Everything but the image node is the generator frame's.
class ColorSourceController : public PiImageGenerator, public virtual PiNodeController {
public:
    ColorSourceController() : PiImageGenerator(XML_FILE_NAME) {}

protected:
    PxStrongHndl<PxImageProtocol> createImageProcNode(OutputPublisher& publisher,
                                                      PxStrongHndl<PxNode const> const& format,
                                                      PxStrongHndl<PxNode const> const& width,
                                                      PxStrongHndl<PxNode const> const& height,
                                                      PxStrongHndl<PxNode const> const& fillColor,
                                                      PxStrongHndl<PxNode const> const& fillAlpha) override {
        // Cast here so that a node of another kind fails at once, naming the cast.
        PxStrongHndl<PxAnimValueProtocol<double> const> alpha(publisher.getInputProcNode(ALPHA_NAME));
        PxStrongHndl<PxNode const> color;
        {
            PxNode::Init init;
            PxStrongHndl<PiColorProcNode> node(new PiColorProcNode(init, publisher, COLOR_NAME));
            PxNode::init(node);
            color = node;
        }
        PxNode::Init init;
        PxStrongHndl<PxColorSourceNode> image(
            new PxColorSourceNode(init, format, width, height, fillColor, fillAlpha, color, alpha));
        PxNode::init(image);
        return image;
    }
};

} // namespace

template <>
void PiImageGeneratorInfo<ColorSourceController>::describe(PiToolPolicyDescriptor& descriptor) const {
    PiImageGenerator::describeGenerator(descriptor);
    // Neither the colour nor the alpha is bound to [0, 1]: values beyond
    // pass to the pixels as they are.
    PiColorProcNode::describe(COLOR_NAME, descriptor, -std::numeric_limits<float>::max(),
                              std::numeric_limits<float>::max(), 0.0);
    descriptor.requires_(ALPHA_NAME, PiSocketType::DOUBLE,
                         PiRangeInputPolicy<double>::create(-std::numeric_limits<double>::max(),
                                                            std::numeric_limits<double>::max(), 1.0, true,
                                                            false),
                         SINGLE);
}

void BtColorSourceTool::registerTool() {
    PiImageGenerator::registerTool(std::make_unique<PiImageGeneratorInfo<ColorSourceController>>(
        TOOL_NAME, PiToolProtocol::getImageGenerationCategory(),
        PiOstrandToolProtocol::getOstrandProductName(), PiOstrandToolProtocol::getOstrandManufacturer(),
        PiOstrandToolProtocol::getOstrandVersionString(), 1, "Generates an image using a given RGB value.",
        TOOL_LISTED, PLAIN_TOOL));
}

RCShdPtr<PiTool const> BtColorSourceTool::getTool() {
    return PiToolRegistry::getInstance().getTool(PiOstrandToolProtocol::getOstrandToolName(TOOL_NAME));
}

std::string const& BtColorSourceTool::getColorInputName() {
    return COLOR_NAME;
}

std::string const& BtColorSourceTool::getAlphaInputName() {
    return ALPHA_NAME;
}

} // namespace Qv
