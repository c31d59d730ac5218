#pragma once
// The controller of a colour's value node. The node has the input "Input",
// through which a colour output may drive the whole colour, and one double
// input per channel ("Red", "Green", "Blue"), each backed by a value node of
// its own: a channel keeps its own constant or keyframes and may be driven
// alone. Whole-colour values are the three channels ("0.25 0.5 1.5"); a
// single number sets all three. A whole-colour change is one undo step.
#include "piColorChannelsProcNode.h"
#include "piNodeController.h"
#include "piToolTopologyInterface.h"
#include "piValueChangeInterface.h"
#include "piValueInterface.h"

#include <array>

namespace Qv {

class PiColorValueNodeController : public PiToolTopologyInterface,
                                   public PiValueInterfaceBase,
                                   public PiValueChangeInterface,
                                   public virtual PiNodeController {
public:
    PiSocketType getValueType() const override { return PiSocketType::COLOR; }
    // Whether any channel has keyframes.
    bool isAnimated() const override;
    PiVariant getConstantVariant() const override;
    // One keyframe wherever a channel has one, with the colour there.
    std::vector<PiKeyframe> getKeyframeVariants() const override;
    PiVariant getVariantAt(double time) const override;
    void setConstantVariant(PiVariant const& value) override;
    void setKeyframeVariant(double time, PiVariant const& value) override;
    // Removes the keyframes of every channel at `time`.
    bool removeKeyframe(double time) override;
    void restoreVariants(PiVariant const& constant, std::vector<PiKeyframe> const& keyframes) override;

    // The value interface of one channel (0 red, 1 green, 2 blue).
    PiValueInterfaceBase& getChannel(std::size_t index) const;

    void createProcNodes(OutputPublisher& publisher) override;
    // A channel changed: tells the node the colour stands for.
    void valueChanged(PiNodeEvent::ValueChanged const& event) override;

private:
    // The three channels of a colour value, or one number for all three.
    std::array<double, 3> toChannels(PiVariant const& value) const;
    // Throws the refusal of the first channel whose policy refuses its value.
    void checkAccepted(std::array<double, 3> const& channels) const;
    template <class Change>
    void changeAll(Change change);

    std::array<PxStrongHndl<PxNode const>, 3> _sources;
    PxStrongHndl<PiColorChannelsProcNode> _gathered;
};

} // namespace Qv
