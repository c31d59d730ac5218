#include "btImageImportTool.h"

#include "btImageImportController.h"
#include "piOstrandToolProtocol.h"
#include "piToolPolicyProtocol.h"
#include "piToolRegistry.h"

#include <memory>

namespace Qv {

namespace {

std::string const TOOL_NAME("Image Import");
std::string const SEQUENCE_NAME("Sequence");
std::string const OUTPUT_IMAGE_NAME("Output Image");
std::string const MAIN_CONTAINER_NAME("ImportMainContainer");
std::string const OPTIONS_CONTAINER_NAME("OptionsContainer");
constexpr int SCHEMA = 2;

class ImageImportToolProtocol : public PiToolPolicyProtocol<BtImageImportController>,
                                public PiOstrandToolProtocol {
public:
    ImageImportToolProtocol()
        : PiOstrandToolProtocol(TOOL_NAME, "Image Import", SCHEMA, "Imports a sequence of image files.",
                                TOOL_LISTED, SUPER_TOOL) {}

    using PiToolPolicyProtocol<BtImageImportController>::describe;

    void describe(PiToolPolicyDescriptor& descriptor) const override {
        descriptor.produces(OUTPUT_IMAGE_NAME, PiSocketType::IMAGE);
        descriptor.stores(SEQUENCE_NAME, PiValueType::STRING);
    }
};

} // namespace

std::string const BtImageImportTool::READER_NODE_NAME("Reader");

void BtImageImportTool::registerTool() {
    PiToolRegistry::getInstance().registerTool(std::make_unique<ImageImportToolProtocol>());
}

RCShdPtr<PiTool const> BtImageImportTool::getTool() {
    return PiToolRegistry::getInstance().getTool(PiOstrandToolProtocol::getOstrandToolName(TOOL_NAME));
}

std::string const& BtImageImportTool::getToolName() {
    return TOOL_NAME;
}

int BtImageImportTool::getVersionNumber() {
    return SCHEMA;
}

std::string const& BtImageImportTool::getSequenceName() {
    return SEQUENCE_NAME;
}

std::string const& BtImageImportTool::getOutputImageName() {
    return OUTPUT_IMAGE_NAME;
}

std::string const& BtImageImportTool::getMainContainerName() {
    return MAIN_CONTAINER_NAME;
}

std::string const& BtImageImportTool::getOptionsContainerName() {
    return OPTIONS_CONTAINER_NAME;
}

} // namespace Qv
