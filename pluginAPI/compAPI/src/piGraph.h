#pragma once
// A composition graph: tool nodes by name and the connections between their
// sockets. A root graph owns the command stack; the inner graph of a group
// shares its root's and holds the group's boundary nodes besides its own
// nodes. Every change records itself on the command stack and rebuilds the
// processing nodes it affects. Application thread only.
#include "cbHandler.h"
#include "piCommandStack.h"
#include "piNode.h"
#include "piNodeSpec.h"
#include "uuid.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Qv {

class PiGraph : public RCBase<> {
public:
    // A root graph with an empty command stack.
    PiGraph();
    // Tells its listeners (PiGraphEvent::GraphClosing) and every node that it
    // is unloaded, then lets go of them.
    ~PiGraph() override;
    PiGraph(PiGraph const&) = delete;
    PiGraph& operator=(PiGraph const&) = delete;

    // A new node of a tool named by its full or short name, named `name` or,
    // when empty, after the tool. The controller's nodeCreated() runs, then
    // the processing nodes are built. Throws PiEx::ExUnknownTool,
    // PiEx::ExInvalidName.
    RCShdPtr<PiNode> createNode(std::string const& toolName, std::string const& name = {});
    // A node read from a composition: no nodeCreated(); its processing nodes
    // wait for buildProcNodes(). Throws PiEx::ExInvalidName, ExBadValue.
    RCShdPtr<PiNode> restoreNode(PiNodeSpec spec);
    // Disconnects the node, takes it out and tells its controller. The
    // expressions driving its inputs go with it.
    void removeNode(RCShdPtr<PiNode> const& node);
    // Tells the graph's listeners (PiGraphEvent::NodeRenamed), also on undo and redo.
    void renameNode(RCShdPtr<PiNode> const& node, std::string const& name);

    // Tool nodes, in the order they were added.
    std::vector<RCShdPtr<PiNode>> const& getNodes() const { return _nodes; }
    // Inside a group: the boundary nodes, one per socket of the group.
    std::vector<RCShdPtr<PiNode>> const& getBoundaryNodes() const { return _boundaryNodes; }
    // A tool node or a boundary node; null when none has that name.
    RCShdPtr<PiNode> findNode(std::string_view name) const;
    // Throws PiEx::ExUnknownNode.
    RCShdPtr<PiNode> getNode(std::string_view name) const;
    RCShdPtr<PiNode> findBoundaryNode(std::string_view name) const;
    // The tool's short name without blanks, then the first free number.
    std::string makeUniqueName(std::string const& base) const;

    // Connects an output to an input of a node of this graph. A value-backed
    // input is driven through its value node. A single input drops what fed
    // it. The output of an input's value node (what the input reads) may
    // feed a dynamic input: that is how an expression reads a parameter. Throws PiEx::ExConnectionRefused for
    // types that differ, a loop, sockets of another graph, a refusal of the controller.
    void connect(RCShdPtr<PiOutput> const& output, RCShdPtr<PiInput> const& input);
    // Drops every connection into the input (for a value-backed input, what
    // drives its value); nothing when there is none.
    void disconnect(RCShdPtr<PiInput> const& input);
    // Drops every connection into and out of the node, and those reading
    // its inputs' values.
    void disconnectAll(PiNode& node);

    // The group holding this graph; null for a root graph.
    PiNode* getGroupNode() const { return _groupNode; }
    PiGraph& getRootGraph();
    PiCommandStack& getCommandStack();
    // The root graph's identity, made with it; an inner graph gives its root's.
    Uuid const& getUuid();

    // Builds the processing nodes of every node, inner graphs included:
    // after a composition is read.
    void buildProcNodes();
    // nodeLoaded() for every node, inner graphs first.
    void notifyLoaded();

    void addCallback(CbHandler<PiGraphEvent const>* handler) { getCommandStack().addCallback(handler); }
    void removeCallback(CbHandler<PiGraphEvent const>* handler) { getCommandStack().removeCallback(handler); }

private:
    friend class PiNode;

    explicit PiGraph(PiNode& groupNode);

    void checkName(std::string const& name, PiNode const* except) const;
    RCShdPtr<PiNode> addNode(PiNodeSpec spec);
    void insertNode(RCShdPtr<PiNode> const& node, std::size_t position);
    std::size_t eraseNode(PiNode& node);
    void addBoundaryNode(RCShdPtr<PiNode> const& node);
    void removeBoundaryNode(std::string_view name);
    bool belongs(PiNode const& node) const;
    // In this graph or in a group inside it, at any depth.
    bool holds(PiNode const& node) const;
    // The connections as such, with the controllers told; the callers log
    // them and rebuild.
    void link(PiOutput& output, PiInput& input, std::size_t position);
    std::size_t unlink(PiOutput& output, PiInput& input);
    void recordLink(RCShdPtr<PiOutput> const& output, RCShdPtr<PiInput> const& input, std::size_t position,
                    bool linked);
    void setHelpersRegistered(PiNode& node, bool registered);

    PiNode* _groupNode = nullptr;
    std::unique_ptr<PiCommandStack> _commandStack;
    Uuid _uuid;
    std::vector<RCShdPtr<PiNode>> _nodes;
    std::vector<RCShdPtr<PiNode>> _boundaryNodes;
};

} // namespace Qv
