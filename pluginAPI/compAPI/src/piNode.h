#pragma once
// A node of a composition graph: a tool node (an instance of a tool, or a
// group holding an inner graph), a value node behind one input, or a
// boundary node standing inside a group for one of the group's inputs or
// outputs. The node owns its sockets, stored values and controller.
// Application thread only.
#include "piInput.h"
#include "piNodeController.h"
#include "piNodeSpec.h"
#include "piOutput.h"
#include "piValue.h"
#include "rcStrongPtr.h"

#include <string>
#include <string_view>
#include <vector>

namespace Qv {

class PiGraph;

class PiNode : public RCBase<> {
public:
    enum Kind { TOOL_NODE = 0, VALUE_NODE = 1, INPUT_BOUNDARY_NODE = 2, OUTPUT_BOUNDARY_NODE = 3 };

    ~PiNode() override;

    Kind getKind() const { return _kind; }
    bool isToolNode() const { return _kind == TOOL_NODE; }
    bool isValueNode() const { return _kind == VALUE_NODE; }
    bool isBoundaryNode() const { return _kind == INPUT_BOUNDARY_NODE || _kind == OUTPUT_BOUNDARY_NODE; }
    bool isGroup() const { return !_innerGraph.isNull(); }

    // A value node is named after its input: "<node>.<input>".
    std::string getName() const;
    // The full name of the tool, as stored; kept when the tool is missing.
    std::string const& getToolName() const { return _toolName; }
    int getSchemaNb() const { return _schemaNb; }
    // Null for a node whose tool is not installed, and for value and boundary nodes.
    RCShdPtr<PiTool const> const& getTool() const { return _tool; }
    // The graph holding the node (for a value node, its input's); null once
    // the node is out of every graph.
    PiGraph* getGraph() const;
    RCShdPtr<PiGraph> const& getInnerGraph() const { return _innerGraph; }
    // The input a value node stands behind.
    RCShdPtr<PiInput> getOwnerInput() const { return RCShdPtr<PiInput>(_ownerInput); }

    // Look-ups by name: null when absent, or PiEx::ExUnknownSocket naming the
    // node and the name when `checked`.
    RCShdPtr<PiInput> getInput(std::string_view name, bool checked = false) const;
    RCShdPtr<PiOutput> getOutput(std::string_view name, bool checked = false) const;
    RCShdPtr<PiValue> getValue(std::string_view name, bool checked = false) const;
    std::vector<RCShdPtr<PiInput>> const& getInputs() const { return _inputs; }
    std::vector<RCShdPtr<PiOutput>> const& getOutputs() const { return _outputs; }
    std::vector<RCShdPtr<PiValue>> const& getValues() const { return _values; }

    RCWeakPtr<PiNodeController> getController() const { return RCWeakPtr<PiNodeController>(_controller); }
    PiNodeController* getControllerPtr() const { return _controller.get(); }
    // The controller as one of its interfaces; null when it does not offer it.
    template <class Interface>
    Interface* getInterface() const {
        return dynamic_cast<Interface*>(_controller.get());
    }

    // Inside a group: the boundary node of one of the group's sockets.
    RCShdPtr<PiNode> getBoundaryNode(std::string_view socketName) const;

    // Dynamic sockets, each one undoable change. The controller decides
    // (PiToolTopologyInterface or PiGroupTopologyInterface); a refusal, or a
    // name in use, throws PiEx::ExSocketRefused.
    RCShdPtr<PiInput> addDynamicInput(std::string const& name, PiSocketType type, Cardinality cardinality);
    void removeDynamicInput(RCShdPtr<PiInput> const& input);
    RCShdPtr<PiOutput> addDynamicOutput(std::string const& name, PiSocketType type);
    void removeDynamicOutput(RCShdPtr<PiOutput> const& output);

    // The name of the input and the output of every value node.
    static std::string const& getValueNodeInputName();
    static std::string const& getValueNodeOutputName();

private:
    friend class PiGraph;
    friend class PiValue;
    friend class PiProcBuilder;
    template <class T>
    friend class PiValueNodeController;
    friend class PiColorValueNodeController;

    PiNode(Kind kind, std::string name);
    // Makes a node from its description: controller bound first, so that the inputs
    // know their policies, then sockets, value nodes, stored values, and for
    // a group the inner graph with its boundary nodes.
    static RCShdPtr<PiNode> build(PiNodeSpec spec);
    // For a structured input, the value node has an input per channel, each
    // backed by a value node of its own.
    static RCShdPtr<PiNode> makeValueNode(PiInput& owner, PiNodeSpec::Input const& spec);
    static RCShdPtr<PiNode> makeBoundaryNode(Kind kind, PiGraph& inner, std::string const& name,
                                             PiSocketType type);

    void bindController(OPtrRet<PiNodeController> controller);
    RCShdPtr<PiInput> makeInput(PiNodeSpec::Input const& spec);
    RCShdPtr<PiOutput> makeOutput(PiNodeSpec::Output const& spec);
    void checkFreeSocketName(std::string const& name, bool input) const;
    // Takes a socket out of the node (and its boundary node out of the inner
    // graph), returning its position; puts it back there.
    std::size_t detachSocket(PiSocket const& socket);
    void attachSocket(RCShdPtr<PiSocket> const& socket, std::size_t position);
    // Logs the addition (or removal) of a dynamic socket just made.
    void recordSocketChange(std::string const& label, RCShdPtr<PiSocket> const& socket, bool added,
                            std::size_t position);
    // Tells the controller and the event's subscribers.
    void notifyValueChanged(std::string const& name, PiVariant const& value, bool input);
    void setGraph(PiGraph* graph);

    Kind _kind;
    std::string _name;
    std::string _toolName;
    int _schemaNb = 0;
    RCShdPtr<PiTool const> _tool;
    PiGraph* _graph = nullptr;
    PiInput* _ownerInput = nullptr;
    RCShdPtr<PiGraph> _innerGraph;
    std::vector<RCShdPtr<PiInput>> _inputs;
    std::vector<RCShdPtr<PiOutput>> _outputs;
    std::vector<RCShdPtr<PiValue>> _values;
    RCStrongPtr<PiNodeController> _controller;
    bool _procNodesBuilt = false;
};

} // namespace Qv
