#include "piValueNodes.h"

#include "piNode.h"
#include "piValueNodeController.h"

namespace Qv::PiValueNodes {

namespace {

template <class T>
OPtrRet<PiNodeController> create(RCShdPtr<PiInputPolicy const> const& policy,
                                 std::optional<PiNodeSpec::Curve> const& curve) {
    bool linear = policy->getDefaultInterpolationType() == PiInputPolicy::INTERPOLATION_LINEAR;
    PiVariant start = policy->getDefault();
    T const* initial = std::get_if<T>(&start);
    auto controller =
        std::make_unique<PiValueNodeController<T>>(PiCurve<T>(initial ? *initial : T{}, linear));
    if (curve)
        controller->restoreVariants(curve->constant, curve->keyframes);
    return controller;
}

} // namespace

OPtrRet<PiNodeController> createController(PiSocketType type, RCShdPtr<PiInputPolicy const> const& policy,
                                           std::optional<PiNodeSpec::Curve> const& curve) {
    switch (type.getType()) {
    case PiSocketType::BOOLEAN:
        return create<bool>(policy, curve);
    case PiSocketType::INTEGER:
        return create<int>(policy, curve);
    case PiSocketType::DOUBLE:
        return create<double>(policy, curve);
    case PiSocketType::STRING:
        return create<std::string>(policy, curve);
    case PiSocketType::TIME:
        return create<DtTime>(policy, curve);
    case PiSocketType::COLOR:
        // Made with its channels by PiNode: see PiColorValueNodeController.
    case PiSocketType::IMAGE:
        break;
    }
    QV_ASSERT(type.isValue());
    return nullptr;
}

bool publishDriver(PiNode& valueNode, PiToolTopologyInterface::OutputPublisher& publisher) {
    RCShdPtr<PiInput> input = valueNode.getInput(PiNode::getValueNodeInputName(), true);
    if (!input->isConnected())
        return false;
    publisher.publish(valueNode.getOutput(PiNode::getValueNodeOutputName(), true),
                      publisher.getInputProcNode(input->getName()));
    return true;
}

} // namespace Qv::PiValueNodes
