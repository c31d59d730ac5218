#pragma once
// The controller of a value node: keeps the input's value as a curve, checks
// every change against the input's policy, logs it on the command stack, and
// publishes either its curve's processing node or, when something drives the
// value, the driver's node.
#include "assertions.h"
#include "piCommandStack.h"
#include "piCurveProcNode.h"
#include "piEx.h"
#include "piGraph.h"
#include "piNode.h"
#include "piNodeRate.h"
#include "piToolTopologyInterface.h"
#include "piValueInterface.h"
#include "piValueNodes.h"
#include "pxRequestMgr.h"
#include "pxSetRequest.h"

#include <fmt/format.h>

namespace Qv {

template <class T>
class PiValueNodeController : public PiToolTopologyInterface,
                              public PiValueInterface<T>,
                              public virtual PiNodeController {
public:
    explicit PiValueNodeController(PiCurve<T> curve) : _curve(std::move(curve)) {}

    void setValue(T const& value) override {
        PiCurve<T> next = _curve;
        next.setConstant(accepted(value));
        change(next);
    }
    T getValue(double time) const override { return _curve.evaluate(time).getValue(); }
    void setKeyframe(double time, T const& value) override {
        if (!getPolicy()->canAnimate())
            throw PiEx::ExValueRefused(__FILE__, __LINE__, "input " + getInputName() + " cannot be animated");
        PiCurve<T> next = _curve;
        next.setKey(time, accepted(value));
        change(next);
    }
    std::vector<std::pair<double, T>> getKeyframes() const override { return _curve.getKeys(); }

    PiSocketType getValueType() const override { return getSocketType(); }
    bool isAnimated() const override { return _curve.isAnimated(); }
    PiVariant getConstantVariant() const override { return _curve.getConstant(); }
    std::vector<PiKeyframe> getKeyframeVariants() const override {
        std::vector<PiKeyframe> keys;
        keys.reserve(_curve.getKeys().size());
        for (auto const& [time, value] : _curve.getKeys()) {
            // Filled in place: a moved temporary variant upsets the compiler's
            // uninitialised-use analysis.
            PiKeyframe& key = keys.emplace_back();
            key.time = time;
            key.value = value;
        }
        return keys;
    }
    PiVariant getVariantAt(double time) const override { return getValue(time); }
    void setConstantVariant(PiVariant const& value) override { setValue(typed(value)); }
    void setKeyframeVariant(double time, PiVariant const& value) override { setKeyframe(time, typed(value)); }
    bool removeKeyframe(double time) override {
        PiCurve<T> next = _curve;
        if (!next.removeKey(time))
            return false;
        change(next);
        return true;
    }
    void restoreVariants(PiVariant const& constant, std::vector<PiKeyframe> const& keyframes) override {
        PiCurve<T> next(typed(constant), _curve.isLinear());
        std::vector<std::pair<double, T>> keys;
        for (PiKeyframe const& key : keyframes)
            keys.emplace_back(key.time, typed(key.value));
        next.setKeys(std::move(keys));
        apply(next);
    }

    void createProcNodes(OutputPublisher& publisher) override {
        RCShdPtr<PiNode> node = getNode();
        if (PiValueNodes::publishDriver(*node, publisher))
            return;
        RCShdPtr<PiOutput> output = node->getOutput(PiNode::getValueNodeOutputName(), true);
        // The curve's node lives as long as the value node: a rebuild gives
        // the nodes above the same node, and changes reach it by request.
        if (_procNode.isNull()) {
            PxNode::Init init;
            _procNode = PxStrongHndl<PiCurveProcNode<T>>(new PiCurveProcNode<T>(init, _curve));
            PxNode::init(_procNode);
        }
        publisher.publish(output, _procNode);
    }

private:
    static PiSocketType getSocketType() {
        if constexpr (std::is_same_v<T, bool>)
            return PiSocketType::BOOLEAN;
        else if constexpr (std::is_same_v<T, int>)
            return PiSocketType::INTEGER;
        else if constexpr (std::is_same_v<T, double>)
            return PiSocketType::DOUBLE;
        else if constexpr (std::is_same_v<T, DtTime>)
            return PiSocketType::TIME;
        else
            return PiSocketType::STRING;
    }

    RCShdPtr<PiInput> getOwner() const {
        RCShdPtr<PiNode> node = getNode();
        return node ? node->getOwnerInput() : RCShdPtr<PiInput>();
    }
    std::string getInputName() const {
        RCShdPtr<PiInput> owner = getOwner();
        return owner ? owner->getFullName() : std::string("value");
    }
    RCShdPtr<PiInputPolicy const> getPolicy() const {
        RCShdPtr<PiInput> owner = getOwner();
        return owner ? owner->getPolicy() : PiInputPolicy::getDefaultPolicy(getSocketType());
    }

    T typed(PiVariant const& value) const {
        if (T const* v = std::get_if<T>(&value))
            return *v;
        // An integer text given to a floating-point input is still a number.
        if constexpr (std::is_same_v<T, double>) {
            if (int const* i = std::get_if<int>(&value))
                return *i;
        }
        throw PiEx::ExBadValue(__FILE__, __LINE__,
                               fmt::format("input {} takes a {} value, not '{}'", getInputName(),
                                           PiSocketType::typeToString(getSocketType()),
                                           PiVariantUtil::toString(value)));
    }

    T accepted(T const& given) const {
        T value = given;
        // A bare frame number counts in the node's rate.
        if constexpr (std::is_same_v<T, DtTime>)
            if (value.getRate().isZero())
                value.setRate(PiNodeRate::get(getNode().get()));
        RCShdPtr<PiInputPolicy const> policy = getPolicy();
        PiVariant variant(value);
        if (!policy->canSetValue(variant)) {
            std::string accepted = policy->describeAcceptedValues();
            throw PiEx::ExValueRefused(__FILE__, __LINE__,
                                       fmt::format("input {} refuses the value {}{}", getInputName(),
                                                   PiVariantUtil::toString(variant),
                                                   accepted.empty() ? "" : " (it takes " + accepted + ")"));
        }
        return typed(policy->filterValue(variant));
    }

    void change(PiCurve<T> const& next) {
        if (next == _curve)
            return;
        RCShdPtr<PiNode> node = getNode();
        QV_ASSERT(node != nullptr);
        if (PiGraph* graph = node->getGraph()) {
            PiCurve<T> previous = _curve;
            // The closures hold the node, and through it this controller.
            graph->getCommandStack().record(
                "Set " + getInputName(),
                [node, previous] { node->template getInterface<PiValueNodeController>()->apply(previous); },
                [node, next] { node->template getInterface<PiValueNodeController>()->apply(next); });
        }
        apply(next);
    }

    void apply(PiCurve<T> const& next) {
        _curve = next;
        if (!_procNode.isNull()) {
            PxRequestMgr& manager = PxRequestMgr::getInstance();
            using Request = PxSetRequest<PiCurveProcNode<T>, PiCurve<T> const&>;
            PxRequestPtr<Request> request(
                new Request(PxNodePtr<PiCurveProcNode<T>>(_procNode), &PiCurveProcNode<T>::setCurve, _curve));
            manager.postRequest(request, 0);
            manager.waitForRequest(request);
            manager.releaseRequest(request);
        }
        if (RCShdPtr<PiInput> owner = getOwner())
            if (PiNode* ownerNode = owner->getNodePtr())
                ownerNode->notifyValueChanged(
                    owner->getName(), _curve.isAnimated() ? PiVariant() : PiVariant(_curve.getConstant()),
                    true);
    }

    PiCurve<T> _curve;
    PxStrongHndl<PiCurveProcNode<T>> _procNode;
};

} // namespace Qv
