#include "btMotioTool.h"

#include "assertions.h"
#include "btMotioController.h"
#include "btMotionUtils.h"
#include "piEnumPolicy.h"
#include "piImageInputPolicy.h"
#include "piImageModifier.h"
#include "piOstrandToolProtocol.h"
#include "piToolPolicyProtocol.h"
#include "piToolRegistry.h"

#include <memory>

namespace Qv {

namespace {

std::string const TOOL_NAME("Motio");
std::string const QUALITY_NAME("Quality");

class MotioToolProtocol : public PiToolPolicyProtocol<MotioController>, public PiOstrandToolProtocol {
public:
    MotioToolProtocol()
        : PiOstrandToolProtocol(TOOL_NAME, PiToolProtocol::getVectorsCategory(), 3,
                                "Analyzes input images and generates 2D optical "
                                "flow motion vectors.",
                                TOOL_LISTED, PLAIN_TOOL) {}

    using PiToolPolicyProtocol<MotioController>::describe;

    void describe(PiToolPolicyDescriptor& descriptor) const override {
        PiImageModifier::addSingleImageInput(
            descriptor, PiImageInputPolicy::createPrimary(1, 7, 1, PiImageInputPolicy::RESET_NONE, false),
            SINGLE);
        descriptor.requires_(QUALITY_NAME, PiSocketType::INTEGER, BtMotioTool::getQualityInputPolicy(),
                             SINGLE);
        // "Output" first: the image is the node's primary output.
        descriptor.produces(PiImageModifier::getOutputName(), PiSocketType::IMAGE);
        descriptor.produces(BtMotionUtils::getFwdVectorsSocketName(), PiSocketType::IMAGE);
        descriptor.produces(BtMotionUtils::getBwdVectorsSocketName(), PiSocketType::IMAGE);
        PiShowVectorsControllerHelper::describe(descriptor);
    }
};

} // namespace

void BtMotioTool::registerTool() {
    auto protocol = std::make_unique<MotioToolProtocol>();
    PiToolProtocol const* const factory = protocol.get();
    std::string const name = protocol->getToolName();
    PiToolRegistry::getInstance().registerTool(std::move(protocol));
    // The registry must now hand out this very protocol: nodes made from
    // another one under the name would not be Motio nodes.
    RCShdPtr<PiTool const> const registered = PiToolRegistry::getInstance().getTool(name);
    PiToolProtocol const* const ehFactory = registered ? &registered->getProtocol() : nullptr;
    QV_ASSERT(ehFactory == factory);
}

std::string const& BtMotioTool::getToolName() {
    return TOOL_NAME;
}

std::string const& BtMotioTool::getQualityInputName() {
    return QUALITY_NAME;
}

RCShdPtr<PiInputPolicy const> BtMotioTool::getQualityInputPolicy() {
    // Each step halves the size the analysis stops at: proxy scale = value.
    static RCShdPtr<PiEnumPolicy const> const policy = PiEnumPolicy::Builder()
                                                           .addPair(0, "Full")
                                                           .addPair(1, "Half")
                                                           .addPair(2, "Quarter")
                                                           .addPair(3, "Eighth")
                                                           .addPair(4, "Sixteenth")
                                                           .addPair(5, "Thirty-second")
                                                           .addPair(6, "Sixty-fourth")
                                                           .setDefaultValue(0)
                                                           .setAnimatable(false)
                                                           .create();
    return policy;
}

} // namespace Qv
