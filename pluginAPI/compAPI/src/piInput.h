#pragma once
// An input of a node. An input of a value type taking one connection is
// backed by a value node: it is connected to that node's output for its
// whole life, and what drives the value (an expression, another node's
// output) connects to the value node's own input. An image input, or one
// that takes many connections, connects directly.
#include "piInputPolicy.h"
#include "piOutput.h"
#include "piSocket.h"
#include "piValueInterface.h"
#include "pxHandles.h"

#include <vector>

namespace Qv {

class PiInput : public PiSocket {
public:
    ~PiInput() override;
    bool isInput() const override { return true; }
    Cardinality getCardinality() const { return _cardinality; }
    bool isMultivalued() const override { return _cardinality == MULTIPLE; }

    // The output feeding the input (for a value-backed input, the value
    // node's); null when unconnected.
    RCShdPtr<PiOutput> getConnectedOutput() const;
    std::vector<RCShdPtr<PiOutput>> getConnectedOutputs() const;
    // What the connected output published; null when unconnected or not built.
    PxStrongHndl<PxNode const> getProcNode() const;
    bool isConnected() const { return !_outputs.empty(); }

    bool hasValueNode() const;
    RCShdPtr<PiNode> getValueNode() const;
    // What drives the value from elsewhere: the output connected to the value
    // node's input, or for an input without value node the connected output.
    RCShdPtr<PiOutput> getDriver() const;
    bool isDriven() const { return !getDriver().isNull(); }

    // The policy the node's controller attached, else the type's default. A
    // channel of a structured input follows the structured input's policy.
    RCShdPtr<PiInputPolicy const> getPolicy() const;
    // The value node's interface. Throws PiEx::ExUnknownSocket naming the
    // input when it has no value node.
    PiValueInterfaceBase& getValueInterface() const;
    // A channel of a structured input ("Red" of a colour): the input of the
    // value node that holds it. Null when the input has no such channel.
    RCShdPtr<PiInput> getChannel(std::string_view channel) const;
    // Shorthands of the value interface.
    void setConstantValue(PiVariant const& value) const;
    PiVariant getValueAt(double time) const;

private:
    friend class PiNode;
    friend class PiGraph;
    friend class PiProcBuilder;
    friend class PiProcPublisher;

    PiInput(PiNode& node, std::string name, PiSocketType type, Cardinality cardinality, bool dynamic);

    Cardinality _cardinality;
    std::vector<PiOutput*> _outputs;
    RCShdPtr<PiNode> _valueNode;
    // What an unconnected input gives, made once so that a rebuild leaves
    // the nodes above unchanged.
    PxStrongHndl<PxNode const> _neutralNode;
};

} // namespace Qv
