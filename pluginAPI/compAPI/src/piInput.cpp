#include "piInput.h"

#include "piEx.h"
#include "piNode.h"
#include "piOutput.h"
#include "piToolInterface.h"

namespace Qv {

PiInput::PiInput(PiNode& node, std::string name, PiSocketType type, Cardinality cardinality, bool dynamic)
    : PiSocket(node, std::move(name), type, dynamic), _cardinality(cardinality) {}

PiInput::~PiInput() = default;

bool PiInput::hasValueNode() const {
    return !_valueNode.isNull();
}

RCShdPtr<PiNode> PiInput::getValueNode() const {
    return _valueNode;
}

RCShdPtr<PiOutput> PiInput::getConnectedOutput() const {
    return _outputs.empty() ? RCShdPtr<PiOutput>() : RCShdPtr<PiOutput>(_outputs.front());
}

PxStrongHndl<PxNode const> PiInput::getProcNode() const {
    return _outputs.empty() ? PxStrongHndl<PxNode const>() : _outputs.front()->getProcNode();
}

std::vector<RCShdPtr<PiOutput>> PiInput::getConnectedOutputs() const {
    std::vector<RCShdPtr<PiOutput>> outputs;
    for (PiOutput* output : _outputs)
        outputs.emplace_back(output);
    return outputs;
}

RCShdPtr<PiOutput> PiInput::getDriver() const {
    if (_valueNode)
        return _valueNode->getInput(PiNode::getValueNodeInputName())->getConnectedOutput();
    return getConnectedOutput();
}

RCShdPtr<PiInputPolicy const> PiInput::getPolicy() const {
    PiNode* node = getNodePtr();
    if (node && node->isValueNode() && getName() != PiNode::getValueNodeInputName())
        if (RCShdPtr<PiInput> owner = node->getOwnerInput())
            return owner->getPolicy();
    if (PiToolInterface* tool = node ? node->getInterface<PiToolInterface>() : nullptr)
        return tool->getInputPolicy(RCShdPtr<PiInput const>(this));
    return PiInputPolicy::getDefaultPolicy(getType());
}

PiValueInterfaceBase& PiInput::getValueInterface() const {
    PiValueInterfaceBase* values = _valueNode ? _valueNode->getInterface<PiValueInterfaceBase>() : nullptr;
    if (!values)
        throw PiEx::ExUnknownSocket(__FILE__, __LINE__, "input " + getFullName() + " holds no value");
    return *values;
}

RCShdPtr<PiInput> PiInput::getChannel(std::string_view channel) const {
    if (!isStructured() || !_valueNode || channel == PiNode::getValueNodeInputName())
        return {};
    return _valueNode->getInput(channel);
}

void PiInput::setConstantValue(PiVariant const& value) const {
    getValueInterface().setConstantVariant(value);
}

PiVariant PiInput::getValueAt(double time) const {
    return getValueInterface().getVariantAt(time);
}

} // namespace Qv
