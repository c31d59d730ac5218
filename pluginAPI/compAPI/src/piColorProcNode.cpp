#include "piColorProcNode.h"

#include "assertions.h"
#include "piRangeInputPolicy.h"

namespace Qv {

PiColorProcNode::PiColorProcNode(PxNode::Init const& init,
                                 PiToolTopologyInterface::OutputPublisher& publisher, std::string const& name)
    : PxNode(init), PxAnimValueProtocol<CoRgbColorTyped<float>>(init) {
    std::array<std::string, 3> const names = getChannelInputNames(name);
    for (std::size_t i = 0; i < names.size(); ++i) {
        _channels[i] = PxNodePtr<PxAnimValueProtocol<double> const>(publisher.getInputProcNode(names[i]));
        QV_ASSERT(!_channels[i].isNull());
    }
}

PiColorProcNode::~PiColorProcNode() {
    for (auto const& channel : _channels)
        unregisterChild(channel);
}

void PiColorProcNode::init() {
    PxAnimValueProtocol<CoRgbColorTyped<float>>::init();
    for (auto const& channel : _channels)
        registerChild(channel);
}

void PiColorProcNode::getAnimValue(PxResult<CoRgbColorTyped<float>>& result,
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

void PiColorProcNode::describe(std::string const& name, PiToolPolicyDescriptor& descriptor, double min,
                               double max, double defaultValue) {
    RCShdPtr<PiInputPolicy const> const policy =
        PiRangeInputPolicy<double>::create(min, max, defaultValue, true, false);
    for (std::string const& channel : getChannelInputNames(name))
        descriptor.requires_(channel, PiSocketType::DOUBLE, policy, SINGLE);
}

std::array<std::string, 3> PiColorProcNode::getChannelInputNames(std::string const& name) {
    return {name + " Red", name + " Green", name + " Blue"};
}

} // namespace Qv
