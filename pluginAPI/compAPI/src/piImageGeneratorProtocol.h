#pragma once
// The protocol of an image generator tool: the identity from constructor
// arguments and the policies of PiToolPolicyProtocol. A tool is an
// instantiation of the leaf PiImageGeneratorInfo<Controller>, whose describe
// it writes as a specialisation:
//
//   template <>
//   void PiImageGeneratorInfo<MyController>::describe(PiToolPolicyDescriptor& d) const {
//       PiImageGenerator::describeGenerator(d);
//       d.requires_("Amount", PiSocketType::DOUBLE, policy, SINGLE);
//   }
//   PiImageGenerator::registerTool(std::make_unique<PiImageGeneratorInfo<MyController>>(...));
#include "piToolPolicyProtocol.h"
#include "piToolProtocolImp.h"

namespace Qv {

template <class Controller>
class PiImageGeneratorProtocol : public PiToolPolicyProtocol<Controller>, public PiToolProtocolImp {
public:
    PiImageGeneratorProtocol(std::string toolName, std::string category, std::string productName,
                             std::string manufacturer, std::string version, int schemaNb,
                             std::string description, ToolVisibility visibility, ToolStructure structure)
        : PiToolProtocolImp(std::move(toolName), std::move(category), std::move(productName),
                            std::move(manufacturer), std::move(version), schemaNb, std::move(description),
                            visibility, structure) {}
};

template <class Controller>
class PiImageGeneratorInfo final : public PiImageGeneratorProtocol<Controller> {
public:
    using PiImageGeneratorProtocol<Controller>::PiImageGeneratorProtocol;
    using PiToolPolicyProtocol<Controller>::describe;

    // Written by each tool.
    void describe(PiToolPolicyDescriptor& descriptor) const override;
};

} // namespace Qv
