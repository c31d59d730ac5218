#include "piNodeSpec.h"

#include "assertions.h"

namespace Qv {

PiNodeSpec PiNodeSpec::fromTool(RCShdPtr<PiTool const> const& tool) {
    QV_ASSERT(tool != nullptr);
    PiNodeSpec spec;
    spec.toolName = tool->getName();
    spec.schemaNb = tool->getProtocol().getSchemaNb();
    spec.tool = tool;
    spec.group = tool->getProtocol().isSuperTool();
    PiToolSignature const& signature = tool->getSignature();
    for (auto const& input : signature.getInputs())
        spec.inputs.push_back({input.name, input.type, input.cardinality, false, std::nullopt});
    for (auto const& output : signature.getOutputs())
        spec.outputs.push_back({output.name, output.type, false});
    for (auto const& value : signature.getValues())
        spec.values.push_back({value.name, value.type, PiVariantUtil::getZero(value.type)});
    return spec;
}

} // namespace Qv
