#pragma once
// The processing node of a colour's value node: gathers the three channel
// values, each a double, into one colour of floats, valid for the times all
// three are.
#include "coColor.h"
#include "pxAnimValueProtocol.h"

#include <array>

namespace Qv {

class PiColorChannelsProcNode : public PxAnimValueProtocol<CoRgbColorTyped<float>> {
public:
    using Channel = PxNodePtr<PxAnimValueProtocol<double> const>;

    PiColorChannelsProcNode(PxNode::Init const& init, std::array<Channel, 3> channels);
    ~PiColorChannelsProcNode() override;

    void init() override;
    void getAnimValue(PxResult<CoRgbColorTyped<float>>& result, PxTimeContext const& context) const override;

private:
    std::array<Channel, 3> _channels;
};

} // namespace Qv
