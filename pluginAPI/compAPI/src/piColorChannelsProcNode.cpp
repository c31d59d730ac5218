#include "piColorChannelsProcNode.h"

#include "assertions.h"

namespace Qv {

PiColorChannelsProcNode::PiColorChannelsProcNode(PxNode::Init const& init, std::array<Channel, 3> channels)
    : PxNode(init), PxAnimValueProtocol<CoRgbColorTyped<float>>(init), _channels(std::move(channels)) {
    for (Channel const& channel : _channels)
        QV_ASSERT(!channel.isNull());
}

PiColorChannelsProcNode::~PiColorChannelsProcNode() {
    for (Channel const& channel : _channels)
        unregisterChild(channel);
}

void PiColorChannelsProcNode::init() {
    PxAnimValueProtocol<CoRgbColorTyped<float>>::init();
    for (Channel const& channel : _channels)
        registerChild(channel);
}

void PiColorChannelsProcNode::getAnimValue(PxResult<CoRgbColorTyped<float>>& result,
                                           PxTimeContext const& context) const {
    PxValidityInterval interval = PxValidityInterval::FULL;
    std::array<float, 3> values{};
    for (std::size_t i = 0; i < _channels.size(); ++i) {
        PxResult<double> channel;
        _channels[i]->getAnimValue(channel, context);
        channel.reduceVI(interval);
        values[i] = static_cast<float>(channel.getValue());
    }
    result.set(CoRgbColorTyped<float>{values[0], values[1], values[2]}, interval);
}

} // namespace Qv
