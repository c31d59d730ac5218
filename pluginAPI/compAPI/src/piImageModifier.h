#pragma once
// The frame of tools that make an image from other images (the Motio
// family, Output). The tool describes its image inputs (addSingleImageInput
// for the usual one, named "Input"), stores the mute and affect values and
// produces "Output"; it writes one hook, createImageProcNode. A muted node
// hands its primary input on unchanged. A node that affects some channels
// only, or whose "Mask" input is connected while the frame masks, mixes the
// tool's image with its primary input (PiModifierMixNode): the channels it
// does not affect, and the pixels outside the mask's alpha, stay the input's.
#include "piNodeController.h"
#include "piSchematicInterface.h"
#include "piToolInterface.h"
#include "piToolPolicyDescriptor.h"
#include "piToolTopologyInterface.h"
#include "piUserInterface.h"
#include "piValueChangeInterface.h"
#include "pxImageProtocol.h"

#include <string>

namespace Qv {

class PiToolProtocol;

class PiImageModifier : public PiToolInterface,
                        public PiToolTopologyInterface,
                        public PiUserInterface,
                        public PiSchematicInterface,
                        public PiValueChangeInterface,
                        public virtual PiNodeController {
public:
    // Who applies a mask: nobody (the tool takes none), the tool's own node,
    // or the frame, from the "Mask" input that describeMasking declares.
    enum MaskingMode { MASKING_NONE = 0, MASKING_BY_TOOL = 1, MASKING_BY_FRAME = 2 };
    // The channels a modifier changes; the others come from its input.
    enum AffectType { AFFECT_RGBA = 0, AFFECT_RGB = 1, AFFECT_ALPHA = 2 };

    class Descriptor : public PiToolPolicyDescriptor {
    public:
        explicit Descriptor(PiToolDescriptor* descriptor) : PiToolPolicyDescriptor(descriptor) {}

        void setMaskingMode(MaskingMode mode) { _maskingMode = mode; }
        MaskingMode getMaskingMode() const { return _maskingMode; }
        virtual bool canAffect(AffectType type) const;
        virtual bool canMute() const;
        virtual bool canBeDisplayModifier() const;

    private:
        MaskingMode _maskingMode = MASKING_BY_FRAME;
    };

    static std::string const& getOutputName();
    static std::string const& getSingleInputName();
    static std::string const& getMaskInputName();
    static std::string const& getMuteValueName();
    static std::string const& getAffectValueName();

    // The "Mask" image input, secondary, and the frame's masking mode.
    static void describeMasking(Descriptor& descriptor);
    // The image input "Input", declared primary.
    static void addSingleImageInput(PiToolPolicyDescriptor& descriptor, RCShdPtr<PiInputPolicy const> policy,
                                    Cardinality cardinality);
    // Registers a tool built on PiImageModifierInfo; the registry owns it.
    static void registerTool(OPtr<PiToolProtocol> protocol);

    ~PiImageModifier() override;

    // Muted: publishes the primary input's node (an empty image when the
    // tool has none); otherwise the node of createImageProcNode, mixed with
    // the primary input by affect and mask when they ask for it.
    void createProcNodes(OutputPublisher& publisher) override;

    std::string getXmlFileName() const override { return _xmlFileName; }
    void valueChanged(PiNodeEvent::ValueChanged const& event) override;

    virtual void resetMute();
    virtual void resetAffect();
    virtual void muteChanged();
    virtual void affectChanged();

    // False for a node whose tool stores no mute value.
    bool isMuted() const;
    AffectType getAffect() const;
    // Set from the tool's descriptor when the controller is made.
    MaskingMode getMaskingMode() const { return _maskingMode; }
    void setMaskingMode(MaskingMode mode) { _maskingMode = mode; }

protected:
    explicit PiImageModifier(std::string xmlFileName = {});

    // The tool's hook: its image node, from the publisher's inputs; initialised.
    virtual PxStrongHndl<PxImageProtocol> createImageProcNode(OutputPublisher& publisher) = 0;

private:
    void setStoredValue(std::string const& name, PiVariant const& value, std::string const& label);

    std::string _xmlFileName;
    MaskingMode _maskingMode = MASKING_NONE;
};

} // namespace Qv
