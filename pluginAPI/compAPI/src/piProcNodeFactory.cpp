#include "piProcNodeFactory.h"

#include "coColor.h"
#include "dtTime.h"
#include "pxEmptyImageNode.h"
#include "pxValueNodes.h"

#include <string>

namespace Qv {

namespace {

template <class T>
PxStrongHndl<PxNode const> constantNode(T const& value) {
    PxNode::Init init;
    PxStrongHndl<PxConstantAnimValueNode<T>> node(
        new PxConstantAnimValueNode<T>(init, PxResult<T>(value, PxValidityInterval::FULL)));
    PxNode::init(node);
    return node;
}

} // namespace

PxStrongHndl<PxNode const> PiProcNodeFactory::createGeneratorNode(PiSocketType type) {
    switch (type.getType()) {
    case PiSocketType::BOOLEAN:
        return constantNode(false);
    case PiSocketType::DOUBLE:
        return constantNode(0.0);
    case PiSocketType::INTEGER:
        return constantNode(0);
    case PiSocketType::STRING:
        return constantNode(std::string());
    case PiSocketType::COLOR:
        return constantNode(CoRgbColorTyped<float>{0.0f, 0.0f, 0.0f});
    case PiSocketType::TIME:
        return constantNode(DtTime());
    case PiSocketType::IMAGE: {
        PxNode::Init init;
        PxStrongHndl<PxEmptyImageNode> node(new PxEmptyImageNode(init));
        PxNode::init(node);
        return node;
    }
    }
    return {};
}

PxStrongHndl<PxNode const> PiProcNodeFactory::createOutputNode(RCShdPtr<PiOutput> const&,
                                                               PxStrongHndl<PxNode const> const& node) {
    return node;
}

} // namespace Qv
