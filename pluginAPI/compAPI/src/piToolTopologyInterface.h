#pragma once
// How a plain tool builds its processing nodes. The host calls
// createProcNodes on the application thread with a publisher: the
// controller takes the processing nodes of its inputs from it, builds its
// own, and publishes one on each output. It runs again at every rebuild of
// the node (a connection changed, forceCreateProcNodes) unless
// isRecreateProcNodesDisabled() says no; nodes built before stay alive as
// long as work posted on them runs.
#include "piSocketType.h"
#include "piTopologyInterface.h"

#include <string>
#include <vector>

namespace Qv {

class PiToolTopologyInterface : public PiTopologyInterface {
public:
    class OutputPublisher {
    public:
        virtual ~OutputPublisher() = default;
        // Publish after PxNode::init(handle), never before.
        virtual void publish(RCShdPtr<PiOutput> const& output, PxStrongHndl<PxNode const> const& node) = 0;
        // The processing node feeding an input: what the connected output
        // published, else a neutral node of the input's type. Throws
        // PiEx::ExUnknownSocket for a name the node does not have.
        virtual PxStrongHndl<PxNode const> getInputProcNode(std::string const& name) = 0;
        // Every node feeding a multiple input, in connection order.
        virtual std::vector<PxStrongHndl<PxNode const>> getInputProcNodes(std::string const& name) = 0;
    };

    virtual bool canAddDynamicInput(std::string const& name, PiSocketType type, Cardinality cardinality);
    virtual bool canRenameDynamicInput(RCShdPtr<PiInput> const& input, std::string const& name);
    virtual bool canRemoveDynamicInput(RCShdPtr<PiInput> const& input);
    virtual bool isRecreateProcNodesDisabled() const;
    // Hooks on the way in and out: the node an input gives, the node an
    // output publishes. Both pass the node on unchanged by default.
    virtual PxStrongHndl<PxNode const> createInputProcNode(RCShdPtr<PiInput> const& input,
                                                           PxStrongHndl<PxNode const> const& node);
    virtual PxStrongHndl<PxNode const> createOutputProcNode(RCShdPtr<PiOutput> const& output,
                                                            PxStrongHndl<PxNode const> const& node);
    virtual void createProcNodes(OutputPublisher& publisher) = 0;
    virtual void dynamicInputAdded(RCShdPtr<PiInput> const& input);
    virtual void dynamicInputRemoved(RCShdPtr<PiInput> const& input);

    // Rebuilds the node's processing nodes now, and those downstream whose
    // inputs change with them.
    void forceCreateProcNodes();
    // The same, only when the node's processing nodes were built: a node still
    // being made (its values restored) builds them later from what it holds.
    void forceCreateProcNodesIfBuilt();
};

} // namespace Qv
