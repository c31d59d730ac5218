#pragma once
// Makes the controller of a value node for an input's type.
#include "exBase.h"
#include "piInputPolicy.h"
#include "piNodeSpec.h"
#include "piToolTopologyInterface.h"

namespace Qv {

namespace PiValueNodes {
// Starts from `curve` when given, else from the policy's default. Throws
// PiEx::ExBadValue when the stored curve holds values of another type.
OPtrRet<PiNodeController> createController(PiSocketType type, RCShdPtr<PiInputPolicy const> const& policy,
                                           std::optional<PiNodeSpec::Curve> const& curve);
// What a value node publishes while something drives it: the driver's node
// on the value node's output. False, publishing nothing, when undriven.
bool publishDriver(PiNode& valueNode, PiToolTopologyInterface::OutputPublisher& publisher);
} // namespace PiValueNodes

} // namespace Qv
