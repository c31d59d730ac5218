#include "piColorValueNodeController.h"

#include "assertions.h"
#include "piColorChannelsProcNode.h"
#include "piColorProcNode.h"
#include "piEx.h"
#include "piGraph.h"
#include "piNode.h"
#include "piUndoGuard.h"
#include "piValueNodes.h"

#include <fmt/format.h>
#include <memory>
#include <set>

namespace Qv {

PiValueInterfaceBase& PiColorValueNodeController::getChannel(std::size_t index) const {
    QV_ASSERT(index < 3);
    RCShdPtr<PiNode> node = getNode();
    QV_ASSERT(node != nullptr);
    return node->getInput(PiColorProcNode::getChannelNames()[index], true)->getValueInterface();
}

bool PiColorValueNodeController::isAnimated() const {
    for (std::size_t i = 0; i < 3; ++i)
        if (getChannel(i).isAnimated())
            return true;
    return false;
}

PiVariant PiColorValueNodeController::getConstantVariant() const {
    std::vector<double> channels;
    for (std::size_t i = 0; i < 3; ++i)
        channels.push_back(std::get<double>(getChannel(i).getConstantVariant()));
    return channels;
}

std::vector<PiKeyframe> PiColorValueNodeController::getKeyframeVariants() const {
    std::set<double> times;
    for (std::size_t i = 0; i < 3; ++i)
        for (PiKeyframe const& key : getChannel(i).getKeyframeVariants())
            times.insert(key.time);
    std::vector<PiKeyframe> keys;
    for (double time : times) {
        PiKeyframe& key = keys.emplace_back();
        key.time = time;
        key.value = getVariantAt(time);
    }
    return keys;
}

PiVariant PiColorValueNodeController::getVariantAt(double time) const {
    std::vector<double> channels;
    for (std::size_t i = 0; i < 3; ++i)
        channels.push_back(std::get<double>(getChannel(i).getVariantAt(time)));
    return channels;
}

std::array<double, 3> PiColorValueNodeController::toChannels(PiVariant const& value) const {
    if (auto const* channels = std::get_if<std::vector<double>>(&value); channels && channels->size() == 3)
        return {(*channels)[0], (*channels)[1], (*channels)[2]};
    if (double const* grey = std::get_if<double>(&value))
        return {*grey, *grey, *grey};
    if (int const* grey = std::get_if<int>(&value))
        return {double(*grey), double(*grey), double(*grey)};
    RCShdPtr<PiNode> node = getNode();
    throw PiEx::ExBadValue(__FILE__, __LINE__,
                           fmt::format("input {} takes a colour (three numbers), not '{}'",
                                       node ? node->getName() : std::string("colour"),
                                       PiVariantUtil::toString(value)));
}

template <class Change>
void PiColorValueNodeController::changeAll(Change change) {
    RCShdPtr<PiNode> node = getNode();
    QV_ASSERT(node != nullptr);
    std::unique_ptr<PiUndoGuard> guard;
    if (PiGraph* graph = node->getGraph())
        guard = std::make_unique<PiUndoGuard>(graph->getCommandStack(), "Set " + node->getName());
    for (std::size_t i = 0; i < 3; ++i)
        change(getChannel(i), i);
}

void PiColorValueNodeController::checkAccepted(std::array<double, 3> const& channels) const {
    RCShdPtr<PiNode> node = getNode();
    for (std::size_t i = 0; i < 3; ++i) {
        RCShdPtr<PiInput> input = node->getInput(PiColorProcNode::getChannelNames()[i], true);
        // The channel's own setter throws the refusal naming it, before any
        // channel has changed.
        if (!input->getPolicy()->canSetValue(PiVariant(channels[i])))
            input->getValueInterface().setConstantVariant(channels[i]);
    }
}

void PiColorValueNodeController::setConstantVariant(PiVariant const& value) {
    std::array<double, 3> const channels = toChannels(value);
    checkAccepted(channels);
    changeAll([&](PiValueInterfaceBase& channel, std::size_t i) { channel.setConstantVariant(channels[i]); });
}

void PiColorValueNodeController::setKeyframeVariant(double time, PiVariant const& value) {
    std::array<double, 3> const channels = toChannels(value);
    checkAccepted(channels);
    changeAll(
        [&](PiValueInterfaceBase& channel, std::size_t i) { channel.setKeyframeVariant(time, channels[i]); });
}

bool PiColorValueNodeController::removeKeyframe(double time) {
    bool removed = false;
    changeAll([&](PiValueInterfaceBase& channel, std::size_t) {
        removed = channel.removeKeyframe(time) || removed;
    });
    return removed;
}

void PiColorValueNodeController::restoreVariants(PiVariant const& constant,
                                                 std::vector<PiKeyframe> const& keyframes) {
    std::array<double, 3> const constants = toChannels(constant);
    for (std::size_t i = 0; i < 3; ++i) {
        std::vector<PiKeyframe> keys;
        for (PiKeyframe const& key : keyframes)
            keys.push_back({key.time, toChannels(key.value)[i]});
        getChannel(i).restoreVariants(constants[i], keys);
    }
}

void PiColorValueNodeController::createProcNodes(OutputPublisher& publisher) {
    RCShdPtr<PiNode> node = getNode();
    if (PiValueNodes::publishDriver(*node, publisher))
        return;
    std::array<PxStrongHndl<PxNode const>, 3> sources;
    for (std::size_t i = 0; i < 3; ++i)
        sources[i] = publisher.getInputProcNode(PiColorProcNode::getChannelNames()[i]);
    // The same channels give the same node, so that a rebuild leaves the
    // nodes above as they are.
    if (_gathered.isNull() || sources != _sources) {
        std::array<PiColorChannelsProcNode::Channel, 3> channels;
        for (std::size_t i = 0; i < 3; ++i)
            channels[i] = sources[i];
        PxNode::Init init;
        _gathered =
            PxStrongHndl<PiColorChannelsProcNode>(new PiColorChannelsProcNode(init, std::move(channels)));
        PxNode::init(_gathered);
        _sources = sources;
    }
    publisher.publish(node->getOutput(PiNode::getValueNodeOutputName(), true), _gathered);
}

void PiColorValueNodeController::valueChanged(PiNodeEvent::ValueChanged const&) {
    RCShdPtr<PiNode> node = getNode();
    RCShdPtr<PiInput> owner = node ? node->getOwnerInput() : RCShdPtr<PiInput>();
    if (PiNode* ownerNode = owner ? owner->getNodePtr() : nullptr)
        ownerNode->notifyValueChanged(owner->getName(), isAnimated() ? PiVariant() : getConstantVariant(),
                                      true);
}

} // namespace Qv
