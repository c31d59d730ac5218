#pragma once
// The protocol of an image modifier tool, like PiImageGeneratorProtocol with
// the modifier's descriptor. A tool is an instantiation of the leaf
// PiImageModifierInfo<Controller>, whose describe it writes as a
// specialisation, and is registered with PiImageModifier::registerTool.
#include "piImageModifier.h"
#include "piToolPolicyProtocol.h"
#include "piToolProtocolImp.h"

#include <set>

namespace Qv {

template <class Controller>
class PiImageModifierProtocol : public PiToolPolicyProtocol<Controller, PiImageModifier::Descriptor>,
                                public PiToolProtocolImp {
public:
    PiImageModifierProtocol(std::string toolName, std::string category, std::string productName,
                            std::string manufacturer, std::string version, int schemaNb,
                            std::string description, ToolVisibility visibility, ToolStructure structure)
        : PiToolProtocolImp(std::move(toolName), std::move(category), std::move(productName),
                            std::move(manufacturer), std::move(version), schemaNb, std::move(description),
                            visibility, structure) {}

protected:
    // The frame masks only for tools whose descriptor says so.
    void copyFromDescriptor(PiImageModifier::Descriptor& descriptor) const override {
        PiToolPolicyProtocol<Controller, PiImageModifier::Descriptor>::copyFromDescriptor(descriptor);
        _maskingMode = descriptor.getMaskingMode();
    }
    void initializeController(Controller& controller) const override {
        PiToolPolicyProtocol<Controller, PiImageModifier::Descriptor>::initializeController(controller);
        controller.setMaskingMode(_maskingMode);
    }

public:
    // Whether the tool declares what the frame needs: the image output, and
    // the mute and affect values it reads.
    virtual bool checkRequirements() const {
        struct Recorder : PiToolDescriptor {
            std::set<std::pair<std::string, int>> declared;
            void requires_(std::string const&, PiSocketType, Cardinality) override {}
            void produces(std::string const& name, PiSocketType type) override {
                declared.emplace(name, 100 + static_cast<int>(type.getType()));
            }
            void stores(std::string const& name, PiValueType type) override {
                declared.emplace(name, static_cast<int>(type));
            }
        } recorder;
        PiImageModifier::Descriptor descriptor(&recorder);
        PiToolPolicyProtocol<Controller, PiImageModifier::Descriptor> const& tool = *this;
        tool.describe(descriptor);
        return recorder.declared.count({PiImageModifier::getOutputName(), 100 + PiSocketType::IMAGE}) &&
               recorder.declared.count(
                   {PiImageModifier::getMuteValueName(), static_cast<int>(PiValueType::BOOL)}) &&
               recorder.declared.count(
                   {PiImageModifier::getAffectValueName(), static_cast<int>(PiValueType::INT)});
    }

private:
    mutable PiImageModifier::MaskingMode _maskingMode = PiImageModifier::MASKING_NONE;
};

template <class Controller>
class PiImageModifierInfo final : public PiImageModifierProtocol<Controller> {
public:
    using PiImageModifierProtocol<Controller>::PiImageModifierProtocol;
    using PiToolPolicyProtocol<Controller, PiImageModifier::Descriptor>::describe;

    // Written by each tool.
    void describe(PiImageModifier::Descriptor& descriptor) const override;
};

} // namespace Qv
