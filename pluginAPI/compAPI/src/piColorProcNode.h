#pragma once
// An RGB colour parameter: one structured input whose three channels, "Red",
// "Green" and "Blue", are inputs of the colour's value node, each with its
// own constant or keyframes, each driven on its own if need be. The value
// node gathers them (PiColorChannelsProcNode); PiColorProcNode is the tool's
// view of the colour input, holding for the times all three channels hold for.
#include "coColor.h"
#include "piToolPolicyDescriptor.h"
#include "piToolTopologyInterface.h"
#include "pxAnimValueProtocol.h"

#include <array>
#include <string>

namespace Qv {

class PiColorProcNode : public PxAnimValueProtocol<CoRgbColorTyped<float>> {
public:
    // Takes the processing node of the colour input `name` from the publisher.
    PiColorProcNode(PxNode::Init const& init, PiToolTopologyInterface::OutputPublisher& publisher,
                    std::string const& name);
    ~PiColorProcNode() override;

    void init() override;
    void getAnimValue(PxResult<CoRgbColorTyped<float>>& result, PxTimeContext const& context) const override;

    // Declares the colour input `name`: single, each channel from min to max
    // with the given default, animatable.
    static void describe(std::string const& name, PiToolPolicyDescriptor& descriptor, double min, double max,
                         double defaultValue);
    // "Red", "Green", "Blue": the channels of every colour input.
    static std::array<std::string, 3> const& getChannelNames();

private:
    PxNodePtr<PxAnimValueProtocol<CoRgbColorTyped<float>> const> _color;
};

} // namespace Qv
