#pragma once
// How a super tool's node is wired: its inputs feed the inner graph through
// input boundary nodes, and inner output boundary nodes feed its outputs.
// The controller may change what crosses the boundary either way.
#include "piBoundaryTopologyInterface.h"
#include "piSocketType.h"
#include "piTopologyInterface.h"

#include <string>

namespace Qv {

class PiGroupTopologyInterface : public PiTopologyInterface {
public:
    virtual bool canAddDynamicInput(std::string const& name, PiSocketType type, Cardinality cardinality);
    virtual bool canAddDynamicOutput(std::string const& name, PiSocketType type);
    virtual bool canRenameDynamicInput(RCShdPtr<PiInput> const& input, std::string const& name);
    virtual bool canRenameDynamicOutput(RCShdPtr<PiOutput> const& output, std::string const& name);
    virtual bool canRemoveDynamicInput(RCShdPtr<PiInput> const& input);
    virtual bool canRemoveDynamicOutput(RCShdPtr<PiOutput> const& output);
    // The node an input hands to the inner graph; passed on unchanged by default.
    virtual PxStrongHndl<PxNode const> createInputProcNode(RCShdPtr<PiInput> const& input,
                                                           PxStrongHndl<PxNode const> const& node);
    // Publishes on a group output what the inner graph gives it (`node`, null
    // when nothing inside feeds it). Publishes `node` by default.
    virtual void createOutputProcNode(PiBoundaryTopologyInterface::Publisher& publisher,
                                      RCShdPtr<PiOutput> const& output,
                                      PxStrongHndl<PxNode const> const& node) const;
    virtual void dynamicInputAdded(RCShdPtr<PiInput> const& input);
    virtual void dynamicInputRenamed(RCShdPtr<PiInput> const& input, std::string const& oldName);
    virtual void dynamicInputRemoved(RCShdPtr<PiInput> const& input);
    virtual void dynamicOutputAdded(RCShdPtr<PiOutput> const& output);
    virtual void dynamicOutputRenamed(RCShdPtr<PiOutput> const& output, std::string const& oldName);
    virtual void dynamicOutputRemoved(RCShdPtr<PiOutput> const& output);
};

} // namespace Qv
