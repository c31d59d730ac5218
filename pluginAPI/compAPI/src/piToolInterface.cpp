#include "piToolInterface.h"

#include "piGraph.h"
#include "piInput.h"
#include "piNode.h"
#include "piNodeController.h"
#include "piOutput.h"
#include "piUndoGuard.h"

namespace Qv {

PiToolInterface::~PiToolInterface() = default;

RCShdPtr<PiInput> PiToolInterface::getPrimaryInput() {
    RCShdPtr<PiNode> node = piControllerOf(*this).getNode();
    if (!node || !node->getTool())
        return {};
    std::string name = node->getTool()->getProtocol().getPrimaryInput();
    return name.empty() ? RCShdPtr<PiInput>() : node->getInput(name);
}

RCShdPtr<PiInput const> PiToolInterface::getPrimaryInput() const {
    return const_cast<PiToolInterface*>(this)->getPrimaryInput();
}

RCShdPtr<PiOutput> PiToolInterface::getPrimaryOutput() {
    RCShdPtr<PiNode> node = piControllerOf(*this).getNode();
    if (!node || node->getOutputs().empty())
        return {};
    return node->getOutputs().front();
}

RCShdPtr<PiOutput const> PiToolInterface::getPrimaryOutput() const {
    return const_cast<PiToolInterface*>(this)->getPrimaryOutput();
}

void PiToolInterface::setInputsAddedOnRestore(bool added) {
    _inputsAddedOnRestore = added;
}

void PiToolInterface::setCurrentPreset(int index) {
    if (index >= 0 && static_cast<std::size_t>(index) < _presets.size())
        _currentPreset = _presets[static_cast<std::size_t>(index)];
}

void PiToolInterface::setCurrentPreset(std::string const& name) {
    _currentPreset = name;
}

std::string PiToolInterface::getCurrentPreset() const {
    return _currentPreset;
}

std::vector<std::string> PiToolInterface::getPresets() const {
    return _presets;
}

void PiToolInterface::setPresets(std::vector<std::string> const& presets) {
    _presets = presets;
}

void PiToolInterface::clearPresets() {
    _presets.clear();
    _currentPreset.clear();
}

RCShdPtr<PiNode> PiToolInterface::getInputValueNode(RCShdPtr<PiInput const> const& input) const {
    return input ? input->getValueNode() : RCShdPtr<PiNode>();
}

void PiToolInterface::reset() {
    RCShdPtr<PiNode> node = piControllerOf(*this).getNode();
    QV_ASSERT(node && node->getGraph());
    PiUndoGuard guard(node->getGraph()->getCommandStack(), "Reset " + node->getName());
    for (RCShdPtr<PiInput> const& input : node->getInputs())
        reset(input);
}

void PiToolInterface::reset(RCShdPtr<PiInput> const& input) {
    if (input && input->hasValueNode() && !input->isDriven())
        getInputPolicy(input)->resetValue(*input);
}

std::string PiToolInterface::getInputPolicyKey(RCShdPtr<PiInput const> const& input) const {
    return input->getName();
}

void PiToolInterface::addInputPolicy(std::string const& name, RCShdPtr<PiInputPolicy const> policy) {
    QV_ASSERT(policy != nullptr);
    _policies[name] = std::move(policy);
}

bool PiToolInterface::hasExplicitInputPolicy(RCShdPtr<PiInput const> const& input) const {
    return input && _policies.count(getInputPolicyKey(input)) > 0;
}

RCShdPtr<PiInputPolicy const> PiToolInterface::getInputPolicy(RCShdPtr<PiInput const> const& input) const {
    auto it = _policies.find(getInputPolicyKey(input));
    return it != _policies.end() ? it->second : PiInputPolicy::getDefaultPolicy(input->getType());
}

} // namespace Qv
