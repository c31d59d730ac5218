#include "piColorProcNode.h"

#include "assertions.h"
#include "piRangeInputPolicy.h"

namespace Qv {

PiColorProcNode::PiColorProcNode(PxNode::Init const& init,
                                 PiToolTopologyInterface::OutputPublisher& publisher, std::string const& name)
    : PxNode(init), PxAnimValueProtocol<CoRgbColorTyped<float>>(init),
      _color(publisher.getInputProcNode(name)) {
    QV_ASSERT(!_color.isNull());
}

PiColorProcNode::~PiColorProcNode() {
    unregisterChild(_color);
}

void PiColorProcNode::init() {
    PxAnimValueProtocol<CoRgbColorTyped<float>>::init();
    registerChild(_color);
}

void PiColorProcNode::getAnimValue(PxResult<CoRgbColorTyped<float>>& result,
                                   PxTimeContext const& context) const {
    _color->getAnimValue(result, context);
}

void PiColorProcNode::describe(std::string const& name, PiToolPolicyDescriptor& descriptor, double min,
                               double max, double defaultValue) {
    descriptor.requires_(name, PiSocketType::COLOR,
                         PiRangeInputPolicy<double>::create(min, max, defaultValue, true, false), SINGLE);
}

std::array<std::string, 3> const& PiColorProcNode::getChannelNames() {
    static std::array<std::string, 3> const names{"Red", "Green", "Blue"};
    return names;
}

} // namespace Qv
