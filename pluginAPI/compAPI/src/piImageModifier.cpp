#include "piImageModifier.h"

#include "piGraph.h"
#include "piImageInputPolicy.h"
#include "piModifierMixNode.h"
#include "piNode.h"
#include "piProcNodeFactory.h"
#include "piToolRegistry.h"
#include "piUndoGuard.h"

namespace Qv {

namespace {
std::string const OUTPUT_NAME("Output");
std::string const SINGLE_INPUT_NAME("Input");
std::string const MASK_INPUT_NAME("Mask");
std::string const MUTE_NAME("Mute");
std::string const AFFECT_NAME("Affect");
} // namespace

bool PiImageModifier::Descriptor::canAffect(AffectType) const {
    return true;
}

bool PiImageModifier::Descriptor::canMute() const {
    return true;
}

bool PiImageModifier::Descriptor::canBeDisplayModifier() const {
    return false;
}

std::string const& PiImageModifier::getOutputName() {
    return OUTPUT_NAME;
}
std::string const& PiImageModifier::getSingleInputName() {
    return SINGLE_INPUT_NAME;
}
std::string const& PiImageModifier::getMaskInputName() {
    return MASK_INPUT_NAME;
}
std::string const& PiImageModifier::getMuteValueName() {
    return MUTE_NAME;
}
std::string const& PiImageModifier::getAffectValueName() {
    return AFFECT_NAME;
}

void PiImageModifier::describeMasking(Descriptor& descriptor) {
    descriptor.requires_(
        MASK_INPUT_NAME, PiSocketType::IMAGE,
        PiImageInputPolicy::createSecondary(0, 0, 0, 0, PiImageInputPolicy::RESET_DISCONNECT, false), SINGLE);
    descriptor.setMaskingMode(MASKING_BY_FRAME);
}

void PiImageModifier::addSingleImageInput(PiToolPolicyDescriptor& descriptor,
                                          RCShdPtr<PiInputPolicy const> policy, Cardinality cardinality) {
    descriptor.requires_(SINGLE_INPUT_NAME, PiSocketType::IMAGE, std::move(policy), cardinality);
    descriptor.setPrimaryInput(SINGLE_INPUT_NAME);
}

void PiImageModifier::registerTool(OPtr<PiToolProtocol> protocol) {
    PiToolRegistry::getInstance().registerTool(std::move(protocol));
}

PiImageModifier::PiImageModifier(std::string xmlFileName) : _xmlFileName(std::move(xmlFileName)) {}

PiImageModifier::~PiImageModifier() = default;

bool PiImageModifier::isMuted() const {
    RCShdPtr<PiNode> node = getNode();
    RCShdPtr<PiValue> mute = node ? node->getValue(MUTE_NAME) : RCShdPtr<PiValue>();
    bool const* muted = mute ? std::get_if<bool>(&mute->getData()) : nullptr;
    return muted && *muted;
}

PiImageModifier::AffectType PiImageModifier::getAffect() const {
    RCShdPtr<PiNode> node = getNode();
    RCShdPtr<PiValue> affect = node ? node->getValue(AFFECT_NAME) : RCShdPtr<PiValue>();
    int const* type = affect ? std::get_if<int>(&affect->getData()) : nullptr;
    return type && *type >= AFFECT_RGBA && *type <= AFFECT_ALPHA ? static_cast<AffectType>(*type)
                                                                 : AFFECT_RGBA;
}

void PiImageModifier::createProcNodes(OutputPublisher& publisher) {
    RCShdPtr<PiNode> node = getNode();
    RCShdPtr<PiOutput> output = node->getOutput(OUTPUT_NAME, true);
    RCShdPtr<PiInput> primary = getPrimaryInput();
    PxStrongHndl<PxNode const> source = primary ? publisher.getInputProcNode(primary->getName())
                                                : PiProcNodeFactory::createGeneratorNode(PiSocketType::IMAGE);
    if (isMuted()) {
        publisher.publish(output, source);
        return;
    }
    PxStrongHndl<PxImageProtocol> image = createImageProcNode(publisher);
    QV_ASSERT(!image.isNull() && image->isInitialized());
    RCShdPtr<PiInput> mask = node->getInput(MASK_INPUT_NAME);
    bool const masked = _maskingMode == MASKING_BY_FRAME && mask && mask->isConnected();
    if (!masked && getAffect() == AFFECT_RGBA) {
        publisher.publish(output, image);
        return;
    }
    PxNode::Init init;
    PxStrongHndl<PiModifierMixNode> mixed(new PiModifierMixNode(
        init, source, image,
        masked ? publisher.getInputProcNode(MASK_INPUT_NAME) : PxStrongHndl<PxNode const>(), getAffect()));
    PxNode::init(mixed);
    publisher.publish(output, mixed);
}

void PiImageModifier::valueChanged(PiNodeEvent::ValueChanged const& event) {
    if (event.isInput())
        return;
    if (event.getName() == MUTE_NAME)
        muteChanged();
    else if (event.getName() == AFFECT_NAME)
        affectChanged();
}

void PiImageModifier::resetMute() {
    setStoredValue(MUTE_NAME, false, "Reset Mute");
}

void PiImageModifier::resetAffect() {
    setStoredValue(AFFECT_NAME, static_cast<int>(AFFECT_RGBA), "Reset Affect");
}

void PiImageModifier::muteChanged() {
    forceCreateProcNodesIfBuilt();
}

void PiImageModifier::affectChanged() {
    forceCreateProcNodesIfBuilt();
}

void PiImageModifier::setStoredValue(std::string const& name, PiVariant const& value,
                                     std::string const& label) {
    RCShdPtr<PiNode> node = getNode();
    QV_ASSERT(node != nullptr);
    std::unique_ptr<PiUndoGuard> guard;
    if (PiGraph* graph = node->getGraph())
        guard = std::make_unique<PiUndoGuard>(graph->getCommandStack(), label);
    node->getValue(name, true)->setData(value);
}

} // namespace Qv
