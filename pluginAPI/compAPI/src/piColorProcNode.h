#pragma once
// An RGB colour parameter. Sockets carry one number each, so a colour named
// "Color" is three floating-point inputs, "Color Red", "Color Green" and
// "Color Blue", sharing one range policy. The processing node gathers the
// three channels into one colour value, for the time asked, holding for the
// times all three hold for.
#include "coColor.h"
#include "piToolPolicyDescriptor.h"
#include "piToolTopologyInterface.h"
#include "pxAnimValueProtocol.h"

#include <array>
#include <string>

namespace Qv {

class PiColorProcNode : public PxAnimValueProtocol<CoRgbColorTyped<float>> {
public:
    // Takes the channels' processing nodes from the publisher, by the names
    // of getChannelInputNames(name).
    PiColorProcNode(PxNode::Init const& init, PiToolTopologyInterface::OutputPublisher& publisher,
                    std::string const& name);
    ~PiColorProcNode() override;

    void init() override;
    void getAnimValue(PxResult<CoRgbColorTyped<float>>& result, PxTimeContext const& context) const override;

    // Declares the three channel inputs of the colour `name`, each single,
    // floating-point, from min to max with the given default.
    static void describe(std::string const& name, PiToolPolicyDescriptor& descriptor, double min, double max,
                         double defaultValue);
    // "<name> Red", "<name> Green", "<name> Blue".
    static std::array<std::string, 3> getChannelInputNames(std::string const& name);

private:
    std::array<PxNodePtr<PxAnimValueProtocol<double> const>, 3> _channels;
};

} // namespace Qv
