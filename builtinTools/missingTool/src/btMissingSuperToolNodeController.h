#pragma once
// The placeholder of a group node whose super tool is not installed: the
// node and its inner graph stay as loaded, it warns once when loaded, its
// inputs are frozen, and its outputs give neutral values, since only the
// missing tool knows what its inside means.
#include "exBase.h"
#include "piGroupInterface.h"
#include "piGroupTopologyInterface.h"
#include "piNodeController.h"
#include "piSchematicInterface.h"
#include "piToolInterface.h"

namespace Qv {

class BtMissingSuperToolNodeController : public PiGroupTopologyInterface,
                                         public PiGroupInterface,
                                         public PiToolInterface,
                                         public PiSchematicInterface,
                                         public virtual PiNodeController {
public:
    void createOutputProcNode(PiBoundaryTopologyInterface::Publisher& publisher,
                              RCShdPtr<PiOutput> const& output,
                              PxStrongHndl<PxNode const> const& node) const override;
    void innerGraphChanged() override;
    void nodeLoaded() override;
    std::string getNodeXmlDescription(Orientation orientation) const override;

    // The factory of OmGraphUtil.
    static OPtrRet<PiNodeController> create();
    static void subscribeMessages();
};

} // namespace Qv
